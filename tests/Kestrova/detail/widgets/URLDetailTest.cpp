#include "Kestrova/detail/widgets/URLDetail.h"

#include "tests/Kestrova/detail/widgets/DetailFixture.h"

namespace kestrova {
namespace {

class URLDetailTest : public DetailFixture {
protected:
    using Preview = LinkPreviewCache::Preview;

    URLDetailTest() {
        view.resize(480, 400);
        view.onHeightChange = [this] { ++heightChanges; };
    }
    void render() { view.render(link, dark); }
    int leastHeight() const { return view.leastHeight(480); }
    /// Of what lies on the page's picture.
    QColor seenOnPicture() { return seenAt(view, {240, 16 + 110}); }

    const QUrl page{u"https://example.org/a"_qs};
    std::shared_ptr<ClipboardItem> link = item(Type::url, page.toString());
    int heightChanges = 0;
    URLDetail view{{.mainQueue = queue, .cache = previews, .defaults = defaults}, nullptr};
};

TEST_F(URLDetailTest, ThePageIsLookedUpOnceItIsSeen) {
    render();
    turn();
    EXPECT_TRUE(previews.fetched.isEmpty());
    view.show();
    EXPECT_TRUE(waitFor([&] { return previews.fetched == QList{page}; }));
    render();
    turn();
    EXPECT_EQ(previews.fetched, QList{page});
}

TEST_F(URLDetailTest, WithAutoLinkPreviewOffNothingIsLookedUp) {
    defaults.set(u"autoLinkPreview"_qs, false);
    view.show();
    render();
    turn();
    EXPECT_TRUE(previews.fetched.isEmpty());
    defaults.set(u"autoLinkPreview"_qs, true);
    render();
    EXPECT_TRUE(waitFor([&] { return previews.fetched == QList{page}; }));
}

TEST_F(URLDetailTest, WithAutoLinkPreviewOffWhatIsKnownIsShown) {
    defaults.set(u"autoLinkPreview"_qs, false);
    previews.known[page] = {u"Title"_qs, {}, {}, {}};
    view.show();
    render();
    EXPECT_EQ(view.accessibleName(), u"Title, https://example.org/a");
}

TEST_F(URLDetailTest, ALinkThatIsPassedWithinATurnIsNotLookedUp) {
    view.show();
    render();
    const QUrl second(u"https://example.org/b"_qs);
    view.render(item(Type::url, second.toString()), dark);
    EXPECT_TRUE(waitFor([&] { return previews.fetched.contains(second); }));
    EXPECT_EQ(previews.fetched, QList{second});
}

TEST_F(URLDetailTest, WhatTheFetchBringsIsShownAtOnce) {
    previews.pages[page] = {u"Title"_qs, u"Site"_qs, filled({300, 200}, Qt::red), {}};
    view.show();
    render();
    const int before = leastHeight();
    ASSERT_TRUE(waitFor([&] { return heightChanges == 1; }));
    EXPECT_GT(leastHeight(), before + 220);
    EXPECT_EQ(seenOnPicture(), QColor(Qt::red));
}

TEST_F(URLDetailTest, WhatAFetchBringsForTheLinkOfBeforeIsNotShown) {
    previews.pages[page] = {u"Title"_qs, u"Site"_qs, filled({300, 200}, Qt::red), {}};
    view.show();
    render();
    ASSERT_TRUE(waitFor([&] { return previews.fetched == QList{page}; }));
    const QUrl second(u"https://example.org/b"_qs);
    view.render(item(Type::url, second.toString()), dark);
    ASSERT_TRUE(waitFor([&] { return heightChanges == 1; }));
    EXPECT_EQ(view.accessibleName(), second.toString());
    EXPECT_NE(seenOnPicture(), QColor(Qt::red));
}

TEST_F(URLDetailTest, AFetchMayEndWhenTheViewHasGone) {
    previews.pages[page] = {u"Title"_qs, {}, {}, {}};
    {
        URLDetail going({.mainQueue = queue, .cache = previews, .defaults = defaults}, nullptr);
        going.show();
        going.render(link, dark);
        ASSERT_TRUE(waitFor([&] { return previews.fetched == QList{page}; }));
    }
    EXPECT_TRUE(waitFor([&] { return previews.known.contains(page); }));
}

TEST_F(URLDetailTest, ThePictureFillsTheWidthAtAHeightOf220) {
    previews.known[page] = {{}, {}, filled({300, 1000}, Qt::red), {}};
    render();
    EXPECT_EQ(areaOf(Qt::red, seen(view)), QRect(16, 16, 480 - 32, 220));
}

TEST_F(URLDetailTest, TheFaviconIs16PointsLarge) {
    previews.known[page] = {{}, u"Site"_qs, {}, filled({64, 64}, Qt::red)};
    render();
    const auto shown = seen(view);
    int red = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            red += shown.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
    EXPECT_EQ(red, 16 * 16);
}

TEST_F(URLDetailTest, WithoutAFaviconAGlobeStandsThere) {
    const QRect place(16, 16, 16, 16);
    render();
    const QUrl second(u"https://example.org/b"_qs);
    previews.known[second] = {{}, u"Site"_qs, {}, {}};
    view.render(item(Type::url, second.toString()), dark);
    const auto shown = seen(view).copy(place);
    int drawn = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            drawn += shown.pixelColor(x, y) != shown.pixelColor(0, 0) ? 1 : 0;
    EXPECT_GT(drawn, 20);
}

TEST_F(URLDetailTest, WithoutAPreviewOnlyTheAddressIsShown) {
    render();
    const auto address = seen(view);
    const int height = leastHeight();
    EXPECT_EQ(view.accessibleName(), page.toString());
    // A page that could not be read is known to tell nothing.
    previews.known[page] = {};
    view.forget();
    render();
    EXPECT_EQ(leastHeight(), height);
    EXPECT_EQ(seen(view), address);
}

TEST_F(URLDetailTest, ATextThatIsNoLinkIsShownAndNotLookedUp) {
    view.show();
    view.render(item(Type::url, u"http://["_qs), dark);
    turn();
    EXPECT_TRUE(previews.fetched.isEmpty());
    EXPECT_EQ(view.accessibleName(), u"http://[");
}

} // namespace
} // namespace kestrova
