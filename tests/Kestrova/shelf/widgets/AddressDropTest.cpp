#include "Kestrova/shelf/CollectionReorderPayload.h"
#include "Kestrova/shelf/ItemDragPayload.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/Kestrova/shelf/widgets/DropFixture.h"

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

using AddressDropTest = DropFixture;

TEST_F(AddressDropTest, AnAddressOnTheListsBecomesARow) {
    EXPECT_EQ(drop(*addresses({link}), overLists), Qt::CopyAction);
    EXPECT_EQ(contents(), QStringList{link.toString()});
    EXPECT_EQ(view.items().front()->type(), ClipboardItemType::url);
    EXPECT_EQ(hud.shown.size(), 1u);
}

TEST_F(AddressDropTest, AFileIsOnlyEverCopied) {
    const auto data = addresses({QUrl(u"file:///nowhere/report.txt"_s)});
    EXPECT_EQ(drop(*data, overLists, Qt::CopyAction | Qt::MoveAction | Qt::LinkAction), Qt::CopyAction);
    EXPECT_EQ(contents(), QStringList{u"/nowhere/report.txt"_s});
    EXPECT_EQ(drop(*data, overLists, Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(contents().size(), 1);
}

TEST_F(AddressDropTest, SeveralAddressesBecomeRowsInTheirOrder) {
    EXPECT_EQ(drop(*addresses({link, QUrl(u"https://example.org/last"_s)}), overLists), Qt::CopyAction);
    EXPECT_EQ(contents(), (QStringList{u"https://example.org/last"_s, link.toString()}));
}

TEST_F(AddressDropTest, AddressesAreTakenByTheGridAndByAnEmptyListToo) {
    view.perform([&] { view._viewMode = ShelfViewMode::grid; });
    const auto& grid = part<ItemGridView>();
    EXPECT_EQ(drop(*addresses({link}), grid.mapTo(&content(), grid.rect().center())), Qt::CopyAction);
    EXPECT_EQ(contents().size(), 1);
}

TEST_F(AddressDropTest, AddressesBesideTheListsAreNotTaken) {
    const auto data = addresses({link});
    const auto& sidebar = part<Sidebar>();
    const auto beside = sidebar.mapTo(&content(), sidebar.rect().center());
    ASSERT_TRUE(enter(*data));
    EXPECT_FALSE(move(*data, beside));
    EXPECT_TRUE(move(*data, overLists));
    EXPECT_EQ(drop(*data, beside), Qt::IgnoreAction);
    EXPECT_EQ(contents(), QStringList());
    EXPECT_EQ(hud.shown.size(), 0u);
}

TEST_F(AddressDropTest, TextThatIsNoAddressIsNotTaken) {
    QMimeData data;
    data.setText(u"words"_s);
    EXPECT_FALSE(enter(data));
    EXPECT_EQ(drop(data, overLists), Qt::IgnoreAction);
    EXPECT_EQ(contents(), QStringList());
}

TEST_F(AddressDropTest, PayloadsOfOtherProgramsAreNotTaken) {
    const auto item = add(u"words"_s);
    QMimeData data;
    data.setData(ItemDragPayload::contentType(),
                 ItemDragPayload{.id = item->id(), .exportText = u"words"_s}.encoded());
    data.setData(CollectionReorderPayload::contentType(), CollectionReorderPayload{.id = {1}}.encoded());
    EXPECT_FALSE(enter(data));
    EXPECT_EQ(drop(data, overLists), Qt::IgnoreAction);
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_FALSE(view._dragReorderPollTimer);
}

TEST_F(AddressDropTest, UnderADetailScreenNothingIsTaken) {
    const auto item = add(u"words"_s);
    view.perform([&] { view.preview(item); });
    EXPECT_EQ(drop(*addresses({link}), overLists), Qt::IgnoreAction);
    EXPECT_EQ(contents().size(), 1);
}

TEST_F(AddressDropTest, UnderTheSheetNothingIsTaken) {
    view.perform([&] { view.presentCollectionSheet(CollectionEditSheet::Mode::create()); });
    EXPECT_EQ(drop(*addresses({link}), overLists), Qt::IgnoreAction);
    EXPECT_EQ(contents(), QStringList());
}

} // namespace
} // namespace kestrova
