#include "Kestrova/detail/widgets/ScrolledPicture.h"
#include "Kestrova/detail/widgets/PicturePage.h"
#include "Kestrova/detail/widgets/ProgressIndicator.h"

#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class ScrolledPictureTest : public testing::Test {
protected:
    ScrolledPictureTest() {
        view.setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        view.resize(400, 300);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    template<typename Widget>
    Widget& part() {
        for (auto* const child : view.findChildren<QWidget*>())
            if (auto* const found = dynamic_cast<Widget*>(child))
                return *found;
        qFatal("There is no such part.");
    }
    void render(const QImage& shown) {
        view.render(shown);
        // The page gets its new height in a later turn.
        QCoreApplication::sendPostedEvents();
    }
    static QImage picture(int width, int height) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::red);
        return image;
    }
    /// Of what is red in the viewport.
    QRect seen() {
        const auto image = view.viewport()->grab().toImage();
        QRect red;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) == Qt::red)
                    red |= QRect(x, y, 1, 1);
        return red;
    }

    ScrolledPicture view{nullptr};
};

TEST_F(ScrolledPictureTest, AnIndicatorTurnsInTheCentreWhileThereIsNoPicture) {
    auto& progress = part<ProgressIndicator>();
    EXPECT_TRUE(progress.isVisible());
    EXPECT_TRUE(progress.isTurning());
    EXPECT_LE((progress.geometry().center() - view.rect().center()).manhattanLength(), 2);
}

TEST_F(ScrolledPictureTest, ThePictureTakesThePlaceOfTheIndicator) {
    render(picture(100, 50));
    EXPECT_FALSE(part<ProgressIndicator>().isVisible());
    EXPECT_FALSE(part<ProgressIndicator>().isTurning());
    EXPECT_FALSE(part<QLabel>().isVisible());
}

TEST_F(ScrolledPictureTest, APictureThatCannotBeReadIsToldOfInWords) {
    render(QImage());
    EXPECT_FALSE(part<ProgressIndicator>().isVisible());
    EXPECT_TRUE(part<QLabel>().isVisible());
    EXPECT_EQ(part<QLabel>().text(), u"이미지를 읽을 수 없어요");
}

TEST_F(ScrolledPictureTest, ASmallPictureIsShownInItsOwnSizeInTheCentre) {
    render(picture(100, 50));
    const auto red = seen();
    EXPECT_EQ(red.size(), QSize(100, 50));
    EXPECT_LE((red.center() - view.viewport()->rect().center()).manhattanLength(), 2);
    EXPECT_FALSE(view.verticalScrollBar()->isVisible());
}

TEST_F(ScrolledPictureTest, APictureIsAtMostAsWideAsThereIsRoom) {
    render(picture(800, 400));
    EXPECT_EQ(seen().width(), view.viewport()->width());
    EXPECT_NEAR(seen().height(), view.viewport()->width() / 2, 1);
    EXPECT_FALSE(view.horizontalScrollBar()->isVisible());
}

TEST_F(ScrolledPictureTest, ATallPictureScrollsDownByTheKeyboard) {
    render(picture(100, 5000));
    auto& bar = *view.verticalScrollBar();
    ASSERT_EQ(bar.maximum(), 5000 - view.viewport()->height());
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_GT(bar.value(), 0);
    const auto line = bar.value();
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(bar.value(), line + 100);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    EXPECT_EQ(seen().bottom(), view.viewport()->rect().bottom());
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(ScrolledPictureTest, TheRoomForAPictureLeavesSomeForTheScrollBar) {
    int resizes = 0;
    view.onResize = [&] { ++resizes; };
    view.resize(500, 300);
    EXPECT_GT(resizes, 0);
    render(picture(view.availableWidth(), 5000));
    ASSERT_TRUE(view.verticalScrollBar()->isVisible());
    EXPECT_EQ(seen().width(), view.availableWidth());
}

} // namespace
} // namespace kestrova
