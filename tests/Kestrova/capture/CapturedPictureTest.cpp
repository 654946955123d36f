#include "Kestrova/capture/CapturedPicture.h"

#include "tests/Kestrova/capture/PngBytes.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QImage gradient() {
    QImage drawn(16, 9, QImage::Format_RGB32);
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
            drawn.setPixel(x, y, qRgb(x * 15, y * 20, 200));
    return drawn;
}

TEST(CapturedPictureTest, ItsPixelsComeBackFromThePNG) {
    CapturedPicture picture(gradient(), pngOf(gradient()));
    EXPECT_TRUE(picture.holdsPixels());
    EXPECT_EQ(picture.pixels(), gradient());
    picture.letGoOfPixels();
    EXPECT_FALSE(picture.holdsPixels());
    EXPECT_EQ(picture.pixels().convertToFormat(QImage::Format_RGB32), gradient());
    EXPECT_FALSE(picture.holdsPixels()) << "nobody asked to keep them";
}

TEST(CapturedPictureTest, WithoutAPNGThePixelsStay) {
    CapturedPicture picture(gradient(), {});
    picture.letGoOfPixels();
    EXPECT_EQ(picture.pixels(), gradient());
}

TEST(CapturedPictureTest, ThePixelsOfACopyAreItsOwn) {
    CapturedPicture picture(gradient(), pngOf(gradient()));
    const auto copy = picture;
    picture.letGoOfPixels();
    EXPECT_TRUE(copy.holdsPixels());
}

TEST(CapturedPictureTest, APNGThatIsNoneGivesANullPicture) {
    CapturedPicture picture(gradient(), "words");
    picture.letGoOfPixels();
    EXPECT_TRUE(picture.pixels().isNull());
}

} // namespace
} // namespace kestrova
