#include "Kestrova/detail/ItemEditView.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/ManualMainQueue.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>
#include <vector>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<ClipboardItem> itemOf(ClipboardItemType type, const QString& content = u"content"_qs) {
    return std::make_shared<ClipboardItem>(content, type, std::nullopt, Timestamp{}, false,
                                           ItemSource::clipboard);
}

class ItemEditViewTest : public testing::Test {
protected:
    std::unique_ptr<ItemEditView> viewOf(const std::shared_ptr<ClipboardItem>& item) {
        auto view = std::make_unique<ItemEditView>(
            item, queue,
            ItemEditView::Callbacks{.onSave = [this](const QString& text) { saved.push_back(text); },
                                    .onCancel = [this] { ++cancels; }});
        view->onRender = [this] { ++renders; };
        return view;
    }

    ManualMainQueue queue;
    std::vector<QString> saved;
    int cancels = 0;
    int renders = 0;
};

struct TitleRow {
    ClipboardItemType type;
    QString title;
};

class ItemEditViewTitleTest : public ItemEditViewTest, public testing::WithParamInterface<TitleRow> {};

TEST_P(ItemEditViewTitleTest, TheTitleIsEditAndTheWordOfTheType) {
    EXPECT_EQ(viewOf(itemOf(GetParam().type))->title(), GetParam().title);
}

INSTANTIATE_TEST_SUITE_P(Types, ItemEditViewTitleTest,
                         testing::Values(TitleRow{ClipboardItemType::text, u"Edit Text"_qs},
                                         TitleRow{ClipboardItemType::rtf, u"Edit Text"_qs},
                                         TitleRow{ClipboardItemType::image, u"Edit Image"_qs},
                                         TitleRow{ClipboardItemType::file, u"Edit File"_qs},
                                         TitleRow{ClipboardItemType::url, u"Edit Link"_qs},
                                         TitleRow{ClipboardItemType::color, u"Edit Color"_qs}));

TEST_F(ItemEditViewTest, TheWorkingCopyStartsAsTheContentOfTheItem) {
    const auto item = itemOf(ClipboardItemType::text, u"a\r\nb\u00a0"_qs);
    const auto view = viewOf(item);
    EXPECT_EQ(view->item, item);
    EXPECT_EQ(view->text, u"a\r\nb\u00a0");
    // However long it is, it is not copied.
    EXPECT_EQ(view->text.constData(), item->content().constData());
}

TEST_F(ItemEditViewTest, TheEditorTakesTheKeyboardJustAfterItAppearsOnTheMainQueue) {
    const auto view = viewOf(itemOf(ClipboardItemType::text));
    view->viewAppears();
    EXPECT_FALSE(view->editorFocused);
    EXPECT_EQ(renders, 0);
    queue.turn();
    EXPECT_TRUE(view->editorFocused);
    EXPECT_EQ(renders, 1);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(ItemEditViewTest, AScreenThatHasGoneBeforeTheTurnTakesNoKeyboard) {
    auto view = viewOf(itemOf(ClipboardItemType::text));
    view->viewAppears();
    view.reset();
    queue.turn();
    EXPECT_EQ(renders, 0);
}

TEST_F(ItemEditViewTest, TheStateFollowsTheKeyboard) {
    const auto view = viewOf(itemOf(ClipboardItemType::text));
    view->editorFocusChanged(true);
    EXPECT_TRUE(view->editorFocused);
    view->editorFocusChanged(false);
    EXPECT_FALSE(view->editorFocused);
}

TEST_F(ItemEditViewTest, SavingCallsOnSaveWithTheText) {
    const auto item = itemOf(ClipboardItemType::text);
    const auto view = viewOf(item);
    view->save(u"edited"_qs);
    EXPECT_THAT(saved, ElementsAre(u"edited"_qs));
    EXPECT_EQ(view->text, u"edited");
    // What becomes of the item is not its business.
    EXPECT_EQ(item->content(), u"content");
    EXPECT_EQ(cancels, 0);
}

TEST_F(ItemEditViewTest, CancellingCallsOnCancelAndSavesNothing) {
    const auto view = viewOf(itemOf(ClipboardItemType::text));
    view->cancel();
    EXPECT_EQ(cancels, 1);
    EXPECT_THAT(saved, IsEmpty());
}

} // namespace
} // namespace kestrova
