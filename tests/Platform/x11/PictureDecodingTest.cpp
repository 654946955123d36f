#include "Platform/x11/PictureDecoding.h"

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

QImage sample() {
    QImage image{40, 30, QImage::Format_ARGB32};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x * 6, y * 8, (x * y) % 256, 255 - x));
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format, int quality = -1) {
    QByteArray bytes;
    QBuffer target{&bytes};
    target.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&target, format, quality));
    return bytes;
}

TEST(PictureDecodingTest, ASoundPngStaysByteForByte) {
    const auto png = encoded(sample(), "PNG");
    const auto picture = pictureFromBytes(png);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->png, png);
    EXPECT_EQ(picture->pixels, QSize(40, 30));
}

TEST(PictureDecodingTest, WhatFollowsTheEndOfAPngDoesNotMakeItUnsound) {
    const auto png = encoded(sample(), "PNG") + "trailing"_ba;
    const auto picture = pictureFromBytes(png);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->png, png);
}

TEST(PictureDecodingTest, AnotherFormatBecomesAPngOfTheSamePixels) {
    const auto image = sample().convertToFormat(QImage::Format_RGB32);
    const auto picture = pictureFromBytes(encoded(image, "BMP"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixels, QSize(40, 30));
    EXPECT_TRUE(picture->png.startsWith("\x89PNG"));
    EXPECT_EQ(QImage::fromData(picture->png).convertToFormat(QImage::Format_RGB32), image);
}

TEST(PictureDecodingTest, APngCutOffAnywhereIsNoPicture) {
    const auto png = encoded(sample(), "PNG");
    for (qsizetype length = 0; length < png.size(); ++length)
        EXPECT_FALSE(pictureFromBytes(png.first(length))) << length << " of " << png.size();
}

TEST(PictureDecodingTest, APngWithADamagedPictureIsNoPicture) {
    auto png = encoded(sample(), "PNG");
    const auto data = png.indexOf("IDAT");
    ASSERT_GT(data, 0);
    png[data + 20] = static_cast<char>(png[data + 20] ^ 0x55);
    EXPECT_FALSE(pictureFromBytes(png));
}

TEST(PictureDecodingTest, GarbageIsNoPicture) {
    const auto signature = "\x89PNG\r\n\x1a\n"_ba;
    const std::vector<QByteArray> rows{"",
                                       "hello",
                                       "\x89PNG",
                                       signature,
                                       signature + QByteArray("\0\0\0\0IEND\xae\x42\x60\x82", 12),
                                       signature + QByteArray("\xff\xff\xff\xffIHDR", 8),
                                       signature + QByteArray(1000, '\xff'),
                                       signature + QByteArray(1000, '\0'),
                                       "GIF89a",
                                       "\xff\xd8\xff\xe0",
                                       "BM",
                                       QByteArray(100000, '\x80')};
    for (const auto& row : rows)
        EXPECT_FALSE(pictureFromBytes(row)) << row.toHex().left(40).constData();
}

TEST(PictureDecodingTest, APictureLargerThanTheToolkitAllowsByItselfIsDecoded) {
    allowLargePictures();
    // 288 MB of pixels, where the toolkit stops at 256.
    QImage large{9000, 8000, QImage::Format_RGB32};
    large.fill(Qt::white);
    const auto png = encoded(large, "PNG", 80);
    large = {};
    const auto picture = pictureFromBytes(png);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixels, QSize(9000, 8000));
}

TEST(PictureDecodingTest, PngIsAlwaysDecodable) {
    EXPECT_TRUE(canDecodePicture("image/png"));
    EXPECT_FALSE(canDecodePicture("image/made-up"));
    EXPECT_FALSE(canDecodePicture(""));
}

TEST(PictureFileTest, ThePictureInAFileIsRead) {
    const QTemporaryDir directory;
    const auto path = directory.filePath(u"a.png"_s);
    ASSERT_TRUE(sample().save(path));
    const auto picture = pictureFromFile(path);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixels, QSize(40, 30));
}

TEST(PictureFileTest, TheContentCountsNotTheExtension) {
    const QTemporaryDir directory;
    const auto path = directory.filePath(u"a.png"_s);
    ASSERT_TRUE(sample().save(path, "BMP"));
    EXPECT_TRUE(pictureFromFile(path));
}

TEST(PictureFileTest, OnlyRegularFilesAreOpened) {
    const QTemporaryDir directory;
    const auto fifo = directory.filePath(u"pipe.png"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(pictureFromFile(fifo));
    EXPECT_FALSE(pictureFromFile(u"/dev/zero"_s));
    EXPECT_FALSE(pictureFromFile(directory.path()));
    EXPECT_FALSE(pictureFromFile(directory.filePath(u"absent.png"_s)));
    EXPECT_FALSE(pictureFromFile({}));
}

} // namespace
} // namespace kestrova
