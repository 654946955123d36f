#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/ItemCardDelegate.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QScrollBar>

#include <algorithm>

namespace kestrova {
namespace {

class ItemGridViewTest : public WidgetFixture {
protected:
    ItemGridViewTest() {
        view.perform([&] { view._viewMode = ShelfViewMode::grid; });
    }

    ItemGridView& grid() { return part<ItemGridView>(); }
    QRect card(int place) { return grid().visualRect(grid().model()->index(place, 0)); }
    /// Where the card shows what the item holds.
    QRect region(int place) {
        const auto frame = card(place);
        return {frame.topLeft() + QPoint(4, 4), ItemCardDelegate::thumbnailSize(frame.width())};
    }
    QRect caption(int place) {
        const auto frame = card(place);
        return frame.adjusted(4, 4 + region(place).height(), -4, -4);
    }
    QImage picture() { return grid().viewport()->grab().toImage(); }
    QColor colorAt(QPoint place) { return picture().pixelColor(place); }
    static QImage filled(const QColor& color) {
        QImage image(300, 200, QImage::Format_RGB32);
        image.fill(color);
        return image;
    }
    /// So many pixels of it are not those of its first one.
    static int drawnIn(const QImage& image) {
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                drawn += image.pixel(x, y) != image.pixel(0, 0) ? 1 : 0;
        return drawn;
    }
};

TEST_F(ItemGridViewTest, ReportsItsColumnsWhenItAppears) {
    view.perform([&] { view._viewMode = ShelfViewMode::list; });
    show();
    std::vector<std::size_t> reported;
    grid().onColumnCountChange = [&](std::size_t columns) { reported.push_back(columns); };
    panel.resize(panel.size() + QSize(200, 0));
    EXPECT_TRUE(reported.empty());
    view.perform([&] { view._viewMode = ShelfViewMode::grid; });
    ASSERT_FALSE(reported.empty());
    EXPECT_EQ(reported.back(), gridColumnCount(grid().width()));
}

TEST_F(ItemGridViewTest, ReportsItsColumnsAtEachChangeOfItsWidth) {
    show();
    std::vector<std::size_t> reported;
    grid().onColumnCountChange = [&](std::size_t columns) { reported.push_back(columns); };
    grid().resize(664, 300);
    grid().resize(664, 200);
    grid().resize(334, 200);
    ASSERT_GE(reported.size(), 2U);
    EXPECT_EQ(reported.front(), 4U);
    EXPECT_EQ(reported.back(), 2U);
    grid().onColumnCountChange = nullptr;
    grid().resize(500, 200);
}

TEST_F(ItemGridViewTest, TheStateKnowsTheColumnsThatAreSeen) {
    for (int i = 0; i < 40; ++i)
        add(QString::number(i));
    view.perform([&] { view._previewVisible = false; });
    show();
    const auto columns = static_cast<int>(view._gridColumnCount);
    ASSERT_GT(columns, 1);
    EXPECT_EQ(card(columns - 1).top(), card(0).top());
    EXPECT_GT(card(columns).top(), card(0).top());
    EXPECT_EQ(card(columns).left(), card(0).left());
    view.perform([&] { view._previewVisible = true; });
    EXPECT_TRUE(waitFor([&] { return view._gridColumnCount < static_cast<std::size_t>(columns); }));
}

TEST_F(ItemGridViewTest, TheScrollBarMovesNoCard) {
    add(u"a"_qs);
    show();
    const auto alone = card(0);
    for (int i = 0; i < 100; ++i)
        add(QString::number(i));
    ASSERT_GT(grid().verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(card(0), alone);
}

TEST_F(ItemGridViewTest, TheSelectedCardKeepsItsPlaceWhileColumnsComeAndGo) {
    for (int i = 0; i < 200; ++i)
        add(QString::number(i));
    show();
    grid().resize(664, 400);
    const auto id = view.filteredItems()[100]->id();
    view.perform([&] { view._selection = view._scrollTarget = id; });
    const int before = card(100).top();
    for (const int width : {500, 334, 200, 664}) {
        grid().resize(width, 400);
        EXPECT_EQ(card(100).top(), before) << width;
    }
}

TEST_F(ItemGridViewTest, APictureFillsTheRegion) {
    add({}, ClipboardItemType::image, false, png({900, 200}, Qt::red));
    show();
    const auto frame = region(0);
    EXPECT_NE(colorAt(frame.center()), QColor(Qt::red));
    EXPECT_TRUE(waitFor([&] { return colorAt(frame.center()) == QColor(Qt::red); }));
    for (const auto place :
         {QPoint(frame.left() + 2, frame.center().y()), QPoint(frame.center().x(), frame.top() + 3),
          QPoint(frame.center().x(), frame.bottom() - 3)})
        EXPECT_EQ(colorAt(place), QColor(Qt::red));
    EXPECT_NE(colorAt(frame.topLeft()), QColor(Qt::red)) << "the corners are round";
}

TEST_F(ItemGridViewTest, ABrokenPictureKeepsThePlaceholder) {
    add({}, ClipboardItemType::image, false, QByteArray("no picture"));
    add({}, ClipboardItemType::image, false, png({30, 20}, Qt::red));
    show();
    const auto inner = [&](int place) { return picture().copy(region(place).adjusted(8, 8, -8, -8)); };
    const auto placeholder = inner(1);
    EXPECT_GT(drawnIn(placeholder), 20);
    EXPECT_TRUE(waitFor([&] { return colorAt(region(0).center()) == QColor(Qt::red); }));
    EXPECT_EQ(inner(1), placeholder);
}

TEST_F(ItemGridViewTest, AColourFillsTheRegion) {
    add(u"#00ff00"_qs, ClipboardItemType::color);
    show();
    EXPECT_EQ(colorAt(region(0).center()), QColor(Qt::green));
    EXPECT_EQ(colorAt(region(0).topLeft() + QPoint(4, 4)), QColor(Qt::green));
}

TEST_F(ItemGridViewTest, ATextStandsAtTheTopAndNoLineIsCut) {
    add(u"한 줄"_qs);
    show();
    view.perform([&] { view._selection.reset(); });
    const auto frame = region(0).adjusted(8, 8, -8, -8);
    const auto shown = picture();
    EXPECT_GT(drawnIn(shown.copy(frame.adjusted(0, 0, 0, -frame.height() + 20))), 10);
    EXPECT_EQ(drawnIn(shown.copy(frame.adjusted(0, 40, 0, 0))), 0);
}

TEST_F(ItemGridViewTest, ALongTextEndsWithinTheRegion) {
    add(QString(u"가나다라 "_qs).repeated(100) + u"\n"_qs);
    add(QString(u"\n"_qs).repeated(100));
    show();
    view.perform([&] { view._selection.reset(); });
    const auto frame = region(1);
    EXPECT_EQ(drawnIn(picture().copy(frame.adjusted(10, frame.height() - 7, -10, -1))), 0);
}

TEST_F(ItemGridViewTest, TheSelectedCardHasAnAccentStroke) {
    add(u"#000000"_qs, ClipboardItemType::color);
    add(u"#000000"_qs, ClipboardItemType::color);
    show();
    view.perform([&] { view._selection = view.filteredItems()[1]->id(); });
    const auto edge = [&](int place) {
        return colorAt({region(place).left() + 1, region(place).center().y()});
    };
    EXPECT_EQ(edge(0), QColor(Qt::black));
    EXPECT_GT(edge(1).blue(), 200);
    EXPECT_EQ(colorAt({region(1).left() + 3, region(1).center().y()}), QColor(Qt::black));
}

TEST_F(ItemGridViewTest, APinStandsInTheLowerRightCorner) {
    add(u"#00ff00"_qs, ClipboardItemType::color, true);
    show();
    const auto frame = region(0);
    EXPECT_GT(drawnIn(picture().copy(QRect(frame.bottomRight() - QPoint(26, 26), QSize(20, 20)))), 100);
}

TEST_F(ItemGridViewTest, ATextMakesRoomForThePin) {
    const auto item = add(QString(QString(25, u'W') + u"\n"_qs).repeated(5));
    show();
    view.perform([&] { view._selection.reset(); });
    const auto besideBadge = QRect(region(0).bottomRight() - QPoint(31, 20), QSize(4, 12));
    const auto ground = picture().copy(region(0)).pixelColor(5, 90);
    const auto isClear = [&] {
        const auto shown = picture().copy(besideBadge);
        return drawnIn(shown) == 0 && shown.pixelColor(0, 0) == ground;
    };
    ASSERT_FALSE(isClear());
    view.perform([&] { view.togglePin(*item); });
    EXPECT_TRUE(isClear());
}

TEST_F(ItemGridViewTest, ALinkShowsWhatIsKnownOfItsPage) {
    add(u"https://example.org/known"_qs, ClipboardItemType::url);
    add(u"https://example.org/unknown"_qs, ClipboardItemType::url);
    show();
    const auto plainCaption = picture().copy(caption(1));
    linkPreviews.known[QUrl(u"https://example.org/known"_qs)] = {
        u"제목"_qs, {}, filled(Qt::red), filled(Qt::blue)};
    EXPECT_EQ(colorAt(region(1).center()), QColor(Qt::red));
    EXPECT_NE(colorAt(region(0).center()), QColor(Qt::red));
    const auto shown = picture().copy(caption(1));
    EXPECT_NE(shown, plainCaption);
    int blue = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            blue += shown.pixelColor(x, y) == QColor(Qt::blue) ? 1 : 0;
    EXPECT_EQ(blue, 10 * 10);
}

TEST_F(ItemGridViewTest, TheCardGrowsWithTheFont) {
    const auto ordinary = QApplication::font();
    const int before = ItemCardDelegate::cardHeight();
    EXPECT_GE(before, 4 + 100 + 28 + 4);
    auto large = ordinary;
    large.setPointSizeF(2 * ordinary.pointSizeF());
    QApplication::setFont(large);
    EXPECT_GT(ItemCardDelegate::cardHeight(), before);
    QApplication::setFont(ordinary);
}

TEST_F(ItemGridViewTest, SaysThatThereIsNothingInTheCollectionWhateverTheLens) {
    show();
    const auto all = picture();
    EXPECT_GT(drawnIn(all), 300);
    view.perform([&] { view._collectionFilter = CollectionFilter::pinned(); });
    EXPECT_EQ(picture(), all);
}

} // namespace
} // namespace kestrova
