#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Platform/x11/QtMainQueue.h"

#include <QBuffer>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using Fit = PictureDecoder::Fit;

/// Red, with a blue half on the right.
QByteArray twoColours(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < size.height(); ++y)
        for (int x = size.width() / 2; x < size.width(); ++x)
            image.setPixelColor(x, y, Qt::blue);
    QBuffer buffer;
    EXPECT_TRUE(image.save(&buffer, "PNG"));
    return buffer.data();
}

TEST(DecodedPictureTest, WithinKeepsTheShapeAndNeverGrows) {
    EXPECT_EQ(decodedPicture(twoColours({400, 100}), {200, 200}, Fit::within).size(), QSize(200, 50));
    EXPECT_EQ(decodedPicture(twoColours({1000, 4000}), {200, 200}, Fit::within).size(), QSize(50, 200));
    EXPECT_EQ(decodedPicture(twoColours({20, 10}), {200, 200}, Fit::within).size(), QSize(20, 10));
    EXPECT_EQ(decodedPicture(twoColours({5000, 2}), {100, 100}, Fit::within).size(), QSize(100, 1));
}

TEST(DecodedPictureTest, FillingIsCutAtTheSides) {
    for (const auto size : {QSize(400, 100), QSize(100, 400), QSize(1920, 1080), QSize(10, 10), QSize(1, 1)})
        EXPECT_EQ(decodedPicture(twoColours(size), {36, 36}, Fit::filling).size(), QSize(36, 36));
    const auto picture = decodedPicture(twoColours({800, 100}), {36, 36}, Fit::filling);
    EXPECT_EQ(picture.pixelColor(2, 18), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(33, 18), QColor(Qt::blue));
}

TEST(DecodedPictureTest, AVeryLongPictureFillsAsAnyOther) {
    const auto picture = decodedPicture(twoColours({30'000, 2}), {160, 100}, Fit::filling);
    EXPECT_EQ(picture.size(), QSize(160, 100));
    EXPECT_EQ(picture.pixelColor(2, 50), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(157, 50), QColor(Qt::blue));
}

TEST(DecodedPictureTest, BytesThatAreNoPictureGiveNone) {
    EXPECT_TRUE(decodedPicture("no picture", {10, 10}, Fit::within).isNull());
    EXPECT_TRUE(decodedPicture({}, {10, 10}, Fit::filling).isNull());
    EXPECT_TRUE(decodedPicture(twoColours({500, 500}).first(200), {10, 10}, Fit::filling).isNull());
}

TEST(PictureDecoderTest, TellsOnTheMainThread) {
    QtMainQueue queue;
    PictureDecoder decoder(queue);
    QImage told;
    QThread* thread = nullptr;
    decoder.decode(StoredImageData(twoColours({100, 100})), {20, 20}, Fit::within,
                   [&](const QImage& picture) {
                       told = picture;
                       thread = QThread::currentThread();
                   });
    EXPECT_TRUE(told.isNull());
    ASSERT_TRUE(QTest::qWaitFor([&] { return thread != nullptr; }, 10'000));
    EXPECT_EQ(thread, QThread::currentThread());
    EXPECT_EQ(told.size(), QSize(20, 20));
}

TEST(PictureDecoderTest, TellsNobodyOnceItHasGone) {
    QtMainQueue queue;
    bool wasTold = false;
    {
        PictureDecoder decoder(queue);
        for (int i = 0; i < 5; ++i)
            decoder.decode(StoredImageData(twoColours({300, 300})), {20, 20}, Fit::within,
                           [&](const QImage&) { wasTold = true; });
    }
    bool isLater = false;
    queue.post([&] { isLater = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isLater; }, 10'000));
    EXPECT_FALSE(wasTold);
}

} // namespace
} // namespace kestrova
