#include "Kestrova/detail/widgets/DetailView.h"

#include "Kestrova/detail/widgets/ColorDetail.h"
#include "Kestrova/detail/widgets/EmptyDetailState.h"
#include "Kestrova/detail/widgets/FastTextView.h"
#include "Kestrova/detail/widgets/FileDetail.h"
#include "Kestrova/detail/widgets/ImageDetail.h"
#include "Kestrova/detail/widgets/InfoRow.h"
#include "Kestrova/detail/widgets/InfoSectionView.h"
#include "Kestrova/detail/widgets/TextDetail.h"
#include "Kestrova/detail/widgets/URLDetail.h"
#include "tests/Kestrova/detail/widgets/DetailFixture.h"

#include <QScrollBar>

#include <algorithm>
#include <typeindex>
#include <typeinfo>

namespace kestrova {
namespace {

class DetailViewTest : public DetailFixture {
protected:
    DetailViewTest() {
        view.resize(480, 440);
        view.show();
    }
    void render(const std::shared_ptr<ClipboardItem>& shown) { view.render(shown, dark); }
    ContentView& content() {
        const auto found = visibleParts<ContentView>(view);
        if (found.size() != 1)
            qFatal("There is not one content.");
        return *found.front();
    }
    InfoSectionView& information() { return *visibleParts<InfoSectionView>(view).at(0); }

    DetailView view{surroundings, nullptr};
};

// The content by type

struct Sample {
    ClipboardItemType type;
    std::type_index view;

    friend void PrintTo(const Sample& sample, std::ostream* stream) {
        *stream << rawText(sample.type).toString().toStdString();
    }
};

class ContentByTypeTest : public DetailViewTest, public testing::WithParamInterface<Sample> {};

TEST_P(ContentByTypeTest, IsShownByTheViewOfItsType) {
    render(item(GetParam().type, u"content"_qs));
    EXPECT_EQ(std::type_index(typeid(content())), GetParam().view);
}

INSTANTIATE_TEST_SUITE_P(All, ContentByTypeTest,
                         testing::Values(Sample{ClipboardItemType::text, typeid(TextDetail)},
                                         Sample{ClipboardItemType::rtf, typeid(TextDetail)},
                                         Sample{ClipboardItemType::image, typeid(ImageDetail)},
                                         Sample{ClipboardItemType::file, typeid(FileDetail)},
                                         Sample{ClipboardItemType::url, typeid(URLDetail)},
                                         Sample{ClipboardItemType::color, typeid(ColorDetail)}),
                         [](const auto& sample) {
                             return rawText(sample.param.type).toString().toStdString();
                         });

TEST_F(DetailViewTest, TheInformationStandsUnderTheContent) {
    for (const auto type : allClipboardItemTypes) {
        render(item(type, u"content"_qs));
        EXPECT_EQ(content().y(), 0);
        EXPECT_EQ(information().y(), content().height());
        EXPECT_GE(content().height(), content().leastHeight(content().width()));
    }
}

TEST_F(DetailViewTest, ATextIsShownInFull) {
    const auto text = u"first line\n"_qs.repeated(3000);
    render(item(Type::text, text));
    EXPECT_EQ(visibleParts<FastTextView>(view).at(0)->text(), text);
}

TEST_F(DetailViewTest, TheRowsCanBeReadWithTheirLabels) {
    workspace.installed[u"editor"_qs] = {.name = u"Editor"_qs, .icon = {}};
    render(item(Type::text, u"twelve chars"_qs, u"editor"_qs));
    const auto rows = visibleParts<InfoRow>(view);
    EXPECT_EQ(spokenNames(rows),
              (QStringList{u"Application: Editor"_qs, u"Content Type: Text"_qs, u"Length: 12 chars"_qs,
                           u"Copied: "_qs + formatters.date.string(moment(0))}));
    EXPECT_TRUE(std::ranges::is_sorted(rows, {}, &QWidget::y));
}

TEST_F(DetailViewTest, TheApplicationsIconStandsBeforeItsName) {
    const auto icon = QIcon(QPixmap::fromImage(filled({32, 32}, Qt::red)));
    workspace.installed[u"editor"_qs] = {.name = u"Editor"_qs, .icon = icon};
    render(item(Type::text, u"a"_qs, u"editor"_qs));
    const auto row = seen(*visibleParts<InfoRow>(view).at(0));
    int red = 0;
    for (int x = 0; x < row.width(); ++x)
        red += row.pixelColor(x, row.height() / 2) == QColor(Qt::red) ? 1 : 0;
    EXPECT_EQ(red, 16);
}

TEST_F(DetailViewTest, AThinDividerStandsAfterEachRowButTheLast) {
    render(item(Type::file, u"/a"_qs));
    const auto rows = visibleParts<InfoRow>(view);
    const auto shown = seen(information());
    const auto ground = shown.pixelColor(2, 2);
    const auto isDivided = [&](const InfoRow& row) {
        const int below = row.geometry().bottom() + 1;
        return shown.pixelColor(row.x() + 1, below) != ground &&
               shown.pixelColor(row.geometry().right() - 1, below) != ground;
    };
    EXPECT_TRUE(isDivided(*rows.at(0)));
    EXPECT_TRUE(isDivided(*rows.at(1)));
    EXPECT_FALSE(isDivided(*rows.at(2)));
}

// While it is shown

TEST_F(DetailViewTest, RenderingTheSameAgainMakesNothingAnew) {
    const auto file = item(Type::file, u"/a"_qs);
    render(file);
    render(item(Type::text, u"a"_qs));
    render(file);
    const auto widgets = view.findChildren<QWidget*>();
    const auto requests = workspace.iconRequests.size();
    for (int i = 0; i < 5; ++i)
        render(file);
    EXPECT_EQ(view.findChildren<QWidget*>(), widgets);
    EXPECT_EQ(workspace.iconRequests.size(), requests);
}

TEST_F(DetailViewTest, AnotherItemUsesTheSameWidgets) {
    render(item(Type::text, u"a"_qs));
    const auto widgets = view.findChildren<QWidget*>();
    render(item(Type::text, u"b"_qs));
    EXPECT_EQ(view.findChildren<QWidget*>(), widgets);
    EXPECT_EQ(visibleParts<FastTextView>(view).at(0)->text(), u"b");
}

TEST_F(DetailViewTest, AChangeOfTheItemIsFollowed) {
    const auto text = item(Type::text, u"a"_qs);
    render(text);
    text->setContent(u"https://example.org"_qs);
    text->setType(Type::url);
    render(text);
    EXPECT_TRUE(dynamic_cast<URLDetail*>(&content()));
    EXPECT_TRUE(spokenNames(visibleParts<InfoRow>(view)).contains(u"Host: example.org"_qs));
}

TEST_F(DetailViewTest, AnItemOfAnotherKindLeavesNothingBehind) {
    render(item(Type::text, u"secret"_qs));
    auto& text = *visibleParts<FastTextView>(view).at(0);
    render(item(Type::color, u"#fff"_qs));
    EXPECT_EQ(text.text(), QString());
}

TEST_F(DetailViewTest, WithoutAnItemNothingOfOneIsKept) {
    std::weak_ptr<ClipboardItem> held;
    for (const auto type : allClipboardItemTypes) {
        const auto shown = item(type, u"secret"_qs);
        held = shown;
        render(shown);
        render(nullptr);
        EXPECT_EQ(shown.use_count(), 1) << rawText(type).toString().toStdString();
        for (const auto* const widget : view.findChildren<QWidget*>())
            EXPECT_FALSE(widget->accessibleName().contains(u"secret") ||
                         widget->toolTip().contains(u"secret"));
    }
    EXPECT_TRUE(held.expired());
    EXPECT_TRUE(visibleParts<ContentView>(view).empty());
}

TEST_F(DetailViewTest, NoNameHoldsAWholeText) {
    const QString huge(100'000, u'x');
    for (const auto type : allClipboardItemTypes) {
        render(item(type, huge));
        for (const auto* const widget : view.findChildren<QWidget*>())
            EXPECT_LT(widget->accessibleName().size() + widget->toolTip().size(), 4000)
                << rawText(type).toString().toStdString();
    }
}

// Room

TEST_F(DetailViewTest, WhereBothHaveRoomNothingScrolls) {
    for (const auto type : allClipboardItemTypes) {
        render(item(type, u"content"_qs));
        EXPECT_EQ(view.verticalScrollBar()->maximum(), 0) << rawText(type).toString().toStdString();
        EXPECT_EQ(information().geometry().bottom() + 1, view.viewport()->height());
    }
}

TEST_F(DetailViewTest, WhereThereIsNoRoomItScrolls) {
    view.resize(480, 80);
    for (const auto type : allClipboardItemTypes) {
        render(item(type, u"content"_qs));
        EXPECT_GT(view.verticalScrollBar()->maximum(), 0) << rawText(type).toString().toStdString();
        EXPECT_LE(information().geometry().right(), view.viewport()->width());
    }
}

TEST_F(DetailViewTest, AnotherItemIsShownFromItsStart) {
    view.resize(480, 120);
    render(item(Type::text, u"a"_qs));
    view.verticalScrollBar()->setValue(30);
    render(item(Type::text, u"b"_qs));
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(DetailViewTest, TheSameItemStaysScrolled) {
    view.resize(480, 120);
    const auto shown = item(Type::text, u"a"_qs);
    render(shown);
    view.verticalScrollBar()->setValue(30);
    shown->setPinned(true);
    render(shown);
    EXPECT_EQ(view.verticalScrollBar()->value(), 30);
}

// Without an item

TEST_F(DetailViewTest, TheEmptyStateSaysWhatToDoInTheMiddle) {
    EmptyDetailState state(nullptr);
    state.resize(400, 300);
    state.render(dark);
    EXPECT_EQ(state.accessibleName(), u"항목을 선택하면 미리보기가 보여요");
    const auto shown = seen(state);
    const auto ground = shown.pixelColor(0, 0);
    QRect drawn;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            if (shown.pixelColor(x, y) != ground)
                drawn |= QRect(x, y, 1, 1);
    EXPECT_NEAR(drawn.center().x(), 200, 4);
    EXPECT_NEAR(drawn.center().y(), 150, 6);
}

} // namespace
} // namespace kestrova
