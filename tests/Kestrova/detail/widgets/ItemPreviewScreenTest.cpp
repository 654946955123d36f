#include "Kestrova/detail/widgets/ItemPreviewScreen.h"
#include "Kestrova/detail/widgets/DetailView.h"
#include "Kestrova/detail/widgets/FastTextView.h"
#include "Kestrova/detail/widgets/ProgressIndicator.h"
#include "Kestrova/detail/widgets/ScrolledPicture.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "tests/Kestrova/detail/widgets/DetailFixture.h"

#include <QLabel>

namespace kestrova {
namespace {

class ItemPreviewScreenTest : public DetailFixture {
protected:
    ItemPreviewScreen& open(const std::shared_ptr<ClipboardItem>& previewed) {
        screen = std::make_unique<ItemPreviewScreen>(
            previewed, surroundings, [this] { ++closes; }, nullptr);
        screen->setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        screen->resize(912, 492);
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
        screen->firstFocus().setFocus();
        return *screen;
    }
    template<typename Widget>
    Widget* part() const {
        const auto found = visibleParts<Widget>(*screen);
        return found.empty() ? nullptr : found.front();
    }
    bool waitForPicture() {
        return waitFor([this] { return screen->view().decodedImage.has_value(); });
    }

    int closes = 0;
    std::unique_ptr<ItemPreviewScreen> screen;
};

TEST_F(ItemPreviewScreenTest, TheBarHasTheTypeAsTitle) {
    open(item(Type::text, u"text"_qs));
    EXPECT_EQ(part<QLabel>()->text(), u"Text");
}

TEST_F(ItemPreviewScreenTest, TheCloseButtonCloses) {
    open(item(Type::text, u"text"_qs));
    EXPECT_EQ(part<SheetButton>()->text(), u"Close");
    QTest::mouseClick(part<SheetButton>(), Qt::LeftButton);
    EXPECT_EQ(closes, 1);
}

TEST_F(ItemPreviewScreenTest, TheWayBackCloses) {
    open(item(Type::text, u"text"_qs));
    QTest::mouseClick(part<SymbolButton>(), Qt::LeftButton);
    EXPECT_EQ(closes, 1);
}

TEST_F(ItemPreviewScreenTest, TextIsShownAsItStandsAndTakesTheKeyboard) {
    for (const auto type : {Type::text, Type::rtf}) {
        open(item(type, u"some\ntext"_qs));
        ASSERT_TRUE(part<FastTextView>());
        EXPECT_EQ(part<FastTextView>()->text(), u"some\ntext");
        EXPECT_TRUE(part<FastTextView>()->isAncestorOf(screen->focusWidget()));
    }
}

TEST_F(ItemPreviewScreenTest, FileLinkAndColourAreShownWithTheirInformation) {
    for (const auto& [type, content] :
         {std::pair(Type::file, u"/home/user/a.txt"_qs), std::pair(Type::url, u"https://example.org"_qs),
          std::pair(Type::color, u"#ff0000"_qs)}) {
        open(item(type, content));
        EXPECT_TRUE(part<DetailView>());
        EXPECT_FALSE(part<FastTextView>() && part<ScrolledPicture>());
    }
}

TEST_F(ItemPreviewScreenTest, APictureIsDecodedInALaterTurnForTheRoomThatThereIs) {
    open(picture(png({3000, 1500}, Qt::red)));
    EXPECT_TRUE(part<ProgressIndicator>());
    ASSERT_TRUE(waitForPicture());
    EXPECT_FALSE(part<ProgressIndicator>());
    EXPECT_EQ(screen->view().decodedImage->width(), part<ScrolledPicture>()->availableWidth());
}

TEST_F(ItemPreviewScreenTest, ASmallPictureKeepsItsSize) {
    open(picture(png({30, 20}, Qt::red)));
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(screen->view().decodedImage->size(), QSize(30, 20));
}

TEST_F(ItemPreviewScreenTest, ATallPictureIsNotMadeSmallerForItsHeight) {
    open(picture(png({300, 9000}, Qt::red)));
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(screen->view().decodedImage->size(), QSize(300, 9000));
}

TEST_F(ItemPreviewScreenTest, ForAPictureThatCannotBeReadNothingTurnsForEver) {
    open(picture("no picture"));
    ASSERT_TRUE(waitForPicture());
    EXPECT_TRUE(screen->view().decodedImage->isNull());
    EXPECT_FALSE(part<ProgressIndicator>());
}

} // namespace
} // namespace kestrova
