#include "Platform/PngEncoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QPainter>
#include <QtEndian>

#include <gtest/gtest.h>

#include <libdeflate.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <string>
#include <vector>

using namespace kestrova;

namespace {

using namespace Qt::StringLiterals;

constexpr int signatureSize = 8;
constexpr int colorTypeOffset = 25;
constexpr char truecolor = 2;
constexpr char truecolorWithAlpha = 6;

QImage decoded(const QByteArray& png) {
    return QImage::fromData(png, "PNG");
}

/// The pixels as the picture has them; how it stores them is left out.
QImage comparable(const QImage& image) {
    // By way of RGB32 where there is no alpha, lest the bytes that stand for it were taken for one.
    auto pixels =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32)
            .convertToFormat(QImage::Format_ARGB32);
    pixels.setColorSpace({});
    return pixels;
}

/// Every byte of every row by chance, the padding behind the rows too.
QImage randomPicture(QSize size, QImage::Format format, std::minstd_rand& random) {
    QImage image(size, format);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = image.scanLine(y);
        for (qsizetype i = 0; i < image.bytesPerLine(); ++i)
            line[i] = static_cast<uchar>(random() >> 8);
    }
    return image;
}

/// Large flat areas with some strokes, and a grainy patch: as a screen has them.
QImage screenLikePicture(QSize size, std::minstd_rand& random) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(qRgb(40, 80, 120));
    for (int stroke = 0; stroke < size.width() * size.height() / 40; ++stroke)
        image.setPixel(static_cast<int>(random() % size.width()), static_cast<int>(random() % size.height()),
                       qRgb(250, 250, 240));
    for (int y = size.height() / 3; y < size.height() / 2; ++y)
        for (int x = size.width() / 4; x < size.width(); ++x) {
            const int grain = static_cast<int>(random() % 6);
            image.setPixel(x, y, qRgb(100 + grain, 110 + grain, (x + y) % 200 + grain));
        }
    return image;
}

/// A slope with grain, as a camera has it; which neighbour tells most of a pixel depends on the slopes. Alpha
/// has grain too.
QImage grainyPicture(QSize size, QImage::Format format, int across, int down, std::minstd_rand& random) {
    QImage image(size, format);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const auto light = [&] {
                return (x * across + y * down + static_cast<int>(random() % 7)) & 0xff;
            };
            reinterpret_cast<QRgb*>(image.scanLine(y))[x] = qRgba(light(), light(), light(), light());
        }
    return image;
}

QByteArray defaultPng(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

struct Chunk {
    QByteArray name;
    QByteArray data;
    bool hasItsChecksum = false;
};

std::vector<Chunk> chunksOf(const QByteArray& png) {
    std::vector<Chunk> chunks;
    for (qsizetype at = signatureSize; at + 12 <= png.size();) {
        const auto size = static_cast<qsizetype>(qFromBigEndian<quint32>(png.constData() + at));
        const auto checked = png.sliced(at + 4, size + 4);
        chunks.push_back({.name = checked.first(4),
                          .data = checked.sliced(4),
                          .hasItsChecksum = qFromBigEndian<quint32>(png.constData() + at + 8 + size) ==
                                            libdeflate_crc32(0, checked.constData(),
                                                             static_cast<std::size_t>(checked.size()))});
        at += size + 12;
    }
    return chunks;
}

/// What the pixels' stream holds, by a decoder that checks every bit of it; empty if it is not sound.
QByteArray inflatedPixels(const QByteArray& png, qsizetype size) {
    QByteArray stream;
    for (const auto& chunk : chunksOf(png))
        if (chunk.name == "IDAT")
            stream += chunk.data;
    QByteArray pixels(size, Qt::Uninitialized);
    auto* decompressor = libdeflate_alloc_decompressor();
    const auto result =
        libdeflate_zlib_decompress(decompressor, stream.constData(), static_cast<std::size_t>(stream.size()),
                                   pixels.data(), static_cast<std::size_t>(pixels.size()), nullptr);
    libdeflate_free_decompressor(decompressor);
    return result == LIBDEFLATE_SUCCESS ? pixels : QByteArray();
}

struct FormatCase {
    QImage::Format format;
    const char* name;
};
std::ostream& operator<<(std::ostream& out, const FormatCase& each) {
    return out << each.name;
}

class PngOfFormat : public testing::TestWithParam<FormatCase> {};

TEST_P(PngOfFormat, keepsEveryPixelAtEverySize) {
    std::minstd_rand random(1);
    for (const QSize size :
         {QSize(1, 1), QSize(1, 17), QSize(17, 1), QSize(2, 3), QSize(7, 5), QSize(33, 65)}) {
        const auto image = randomPicture(size, GetParam().format, random);
        EXPECT_EQ(comparable(decoded(pngData(image))), comparable(image))
            << size.width() << " x " << size.height();
    }
}

TEST_P(PngOfFormat, keepsEveryPixelOfAPartOfAPicture) {
    std::minstd_rand random(2);
    const auto whole = randomPicture(QSize(61, 41), GetParam().format, random);
    // Shares the rows of the whole, so that they are longer than the part is wide.
    const QImage part(whole.constScanLine(3), 20, 30, whole.bytesPerLine(), whole.format());
    EXPECT_EQ(comparable(decoded(pngData(part))), comparable(part.copy()));
}

INSTANTIATE_TEST_SUITE_P(
    Formats, PngOfFormat,
    testing::Values(FormatCase{QImage::Format_RGB32, "RGB32"}, FormatCase{QImage::Format_ARGB32, "ARGB32"},
                    FormatCase{QImage::Format_RGB888, "RGB888"}, FormatCase{QImage::Format_BGR888, "BGR888"},
                    FormatCase{QImage::Format_RGBX8888, "RGBX8888"},
                    FormatCase{QImage::Format_RGBA8888, "RGBA8888"},
                    FormatCase{QImage::Format_RGB16, "RGB16"}, FormatCase{QImage::Format_RGB555, "RGB555"},
                    FormatCase{QImage::Format_Grayscale8, "Grayscale8"},
                    FormatCase{QImage::Format_Alpha8, "Alpha8"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(PngEncoder, RGB32IsOpaqueWhateverLiesInTheFourthByte) {
    QImage image(3, 2, QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            reinterpret_cast<QRgb*>(image.scanLine(y))[x] = qRgba(10 * x, 20 * y, 30, 0);
    const auto png = pngData(image);
    EXPECT_EQ(png[colorTypeOffset], truecolor);
    EXPECT_EQ(decoded(png).pixel(2, 1), qRgb(20, 20, 30));
}

TEST(PngEncoder, premultipliedColoursComeOutAsTheyWereMeant) {
    // Every pair of alpha and of a colour that it allows.
    QImage image(256, 256, QImage::Format_ARGB32_Premultiplied);
    const auto premultiplied = [](int color, int alpha) {
        return qRgba(std::min(color, alpha), 0, alpha, alpha);
    };
    for (int alpha = 0; alpha < 256; ++alpha)
        for (int color = 0; color < 256; ++color)
            reinterpret_cast<QRgb*>(image.scanLine(alpha))[color] = premultiplied(color, alpha);
    const auto back = decoded(pngData(image));
    for (int alpha = 0; alpha < 256; ++alpha)
        for (int color = 0; color < 256; ++color) {
            const auto pixel = back.pixel(color, alpha);
            ASSERT_EQ(qPremultiply(pixel), premultiplied(color, alpha)) << color << " of " << alpha;
            ASSERT_EQ(qBlue(pixel), alpha == 0 ? 0 : 255);
        }
}

class PngWithAlpha : public testing::TestWithParam<QImage::Format> {};

TEST_P(PngWithAlpha, hasNoAlphaChannelWhereAllIsOpaque) {
    QImage image(200, 100, GetParam());
    image.fill(QColor(10, 20, 30, 255));
    const auto png = pngData(image);
    EXPECT_EQ(png[colorTypeOffset], truecolor);
    EXPECT_EQ(comparable(decoded(png)), comparable(image));
}

TEST_P(PngWithAlpha, hasAnAlphaChannelForASinglePixel) {
    QImage image(200, 100, GetParam());
    image.fill(QColor(10, 20, 30, 255));
    image.setPixelColor(199, 99, QColor(10, 20, 30, 254));
    const auto png = pngData(image);
    EXPECT_EQ(png[colorTypeOffset], truecolorWithAlpha);
    EXPECT_EQ(comparable(decoded(png)), comparable(image));
}

INSTANTIATE_TEST_SUITE_P(Formats, PngWithAlpha,
                         testing::Values(QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                                         QImage::Format_RGBA8888));

TEST(PngEncoder, coloursBehindFullTransparencyAreKept) {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(1, 2, 3, 0));
    image.setPixel(1, 0, qRgba(4, 5, 6, 255));
    EXPECT_EQ(decoded(pngData(image)).pixel(0, 0), qRgba(1, 2, 3, 0));
}

TEST(PngEncoder, palettesBecomeTheirColours) {
    QImage image(16, 4, QImage::Format_Indexed8);
    for (int i = 0; i < 16; ++i)
        image.setColor(i, qRgba(i * 10, 255 - i, 7, i < 8 ? 255 : 100));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 16; ++x)
            image.setPixel(x, y, static_cast<uint>(x));
    EXPECT_EQ(comparable(decoded(pngData(image))), comparable(image));
}

TEST(PngEncoder, sixteenBitsAChannelAreRoundedToEight) {
    QImage image(64, 64, QImage::Format_RGBA64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            image.setPixelColor(x, y,
                                QColor::fromRgba64(static_cast<quint16>(x * 1040),
                                                   static_cast<quint16>(y * 1040), 12'345, 50'000));
    EXPECT_EQ(comparable(decoded(pngData(image))), image.convertToFormat(QImage::Format_ARGB32));
}

class LargePng : public testing::TestWithParam<QSize> {};

TEST_P(LargePng, isOneSoundStreamOfAllRows) {
    std::minstd_rand random(3);
    for (const auto& image :
         {screenLikePicture(GetParam(), random), randomPicture(GetParam(), QImage::Format_ARGB32, random)}) {
        const auto png = pngData(image);
        const auto channels = image.hasAlphaChannel() ? 4 : 3;
        const auto size = qsizetype{image.height()} * (image.width() * channels + 1);
        // The checksum of the whole stream is looked at here; the toolkit's reader is content without.
        EXPECT_EQ(inflatedPixels(png, size).size(), size);
        EXPECT_EQ(comparable(decoded(png)), comparable(image));
    }
}

// From fewer rows than are compressed in one go to many times as many.
INSTANTIATE_TEST_SUITE_P(Sizes, LargePng,
                         testing::Values(QSize(1'000, 200), QSize(1'000, 349), QSize(1'000, 350),
                                         QSize(1'001, 1'777), QSize(1'920, 1'080), QSize(20'000, 60),
                                         QSize(30'000, 40), QSize(3, 40'000)),
                         [](const auto& each) {
                             return std::to_string(each.param.width()) + "x" +
                                    std::to_string(each.param.height());
                         });

TEST(PngEncoder, keepsPicturesOfEveryKindAndSize) {
    std::minstd_rand random(4);
    for (int round = 0; round < 150; ++round) {
        const QSize size(static_cast<int>(random() % 400 + 1), static_cast<int>(random() % 300 + 1));
        const auto image = round % 2 == 0 ? screenLikePicture(size, random)
                                          : randomPicture(size, QImage::Format_ARGB32, random);
        ASSERT_EQ(comparable(decoded(pngData(image))), comparable(image))
            << size.width() << " x " << size.height() << ", round " << round;
    }
}

TEST(PngEncoder, writesTheUsualChunksEachWithItsChecksum) {
    std::minstd_rand random(5);
    const auto png = pngData(screenLikePicture(QSize(1'920, 1'080), random));
    EXPECT_TRUE(png.startsWith("\x89PNG\r\n\x1a\n"_ba));
    const auto chunks = chunksOf(png);
    ASSERT_GE(chunks.size(), 4u);
    EXPECT_EQ(chunks.front().name, "IHDR"_ba);
    EXPECT_EQ(chunks.front().data, "\0\0\x07\x80\0\0\x04\x38\x08\x02\0\0\0"_ba);
    EXPECT_EQ(chunks.back().name, "IEND"_ba);
    EXPECT_TRUE(chunks.back().data.isEmpty());
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        EXPECT_TRUE(chunks[i].hasItsChecksum) << i;
        const bool isInside = i > 0 && i + 1 < chunks.size();
        EXPECT_EQ(chunks[i].name == "IDAT"_ba, isInside) << i;
    }
}

TEST(PngEncoder, givesTheSameBytesForTheSamePicture) {
    std::minstd_rand random(6);
    const auto image = screenLikePicture(QSize(1'920, 1'080), random);
    const auto png = pngData(image);
    for (int again = 0; again < 5; ++again)
        EXPECT_EQ(pngData(image.copy()), png);
}

TEST(PngEncoder, leavesOutWhatIsNotAPixel) {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    const auto png = pngData(image);
    image.setColorSpace(QColorSpace::AdobeRgb);
    image.setText(u"Title"_s, u"A secret"_s);
    image.setDotsPerMeterX(1'000);
    EXPECT_EQ(pngData(image), png);
}

TEST(PngEncoder, ofAScreenIsNoLargerThanTheToolkitsOwn) {
    std::minstd_rand random(7);
    const auto image = screenLikePicture(QSize(800, 600), random);
    EXPECT_LE(pngData(image).size(), defaultPng(image).size());
}

TEST(PngEncoder, ofAGrainyPictureIsNoLargerThanTheToolkitsOwn) {
    QImage image(800, 600, QImage::Format_RGB32);
    std::minstd_rand random(8);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const auto grain = [&] { return static_cast<int>(random() % 7); };
            image.setPixel(x, y, qRgb(x / 4 + grain(), y / 3 + grain(), (x + y) / 8 + grain()));
        }
    EXPECT_LE(pngData(image).size(), defaultPng(image).size());
}

TEST(PngEncoder, ofAGradientIsNoLargerThanTheToolkitsOwn) {
    QImage image(1'920, 1'080, QImage::Format_RGB32);
    QLinearGradient gradient(image.rect().topLeft(), image.rect().bottomRight());
    gradient.setColorAt(0, Qt::blue);
    gradient.setColorAt(1, Qt::yellow);
    QPainter(&image).fillRect(image.rect(), gradient);
    EXPECT_LE(pngData(image).size(), defaultPng(image).size());
}

TEST(PngEncoder, keepsGrainWhateverItsSlopes) {
    std::minstd_rand random(9);
    for (const auto format : {QImage::Format_RGB32, QImage::Format_ARGB32})
        for (const QSize size : {QSize(1, 400), QSize(2, 3), QSize(400, 1), QSize(333, 77)})
            for (const int across : {0, 1, 40})
                for (const int down : {0, 1, 40}) {
                    const auto image = grainyPicture(size, format, across, down, random);
                    ASSERT_EQ(comparable(decoded(pngData(image))), comparable(image))
                        << size.width() << " x " << size.height() << ", slopes " << across << " and " << down;
                }
}

TEST(PngEncoder, keepsEveryPixelWherePhotographsTextAndGradientsMeet) {
    std::minstd_rand random(10);
    // Each of them as tall as several of the parts that are compressed in one go.
    const QSize size(1'000, 900);
    const auto photograph = grainyPicture(size, QImage::Format_RGB32, 0, 0, random);
    const auto text = screenLikePicture(size, random);
    QImage gradient(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            gradient.setPixel(x, y, qRgb((x + y) / 16, x / 16, 200));
    QImage image(size.width(), 5 * size.height(), QImage::Format_RGB32);
    int y = 0;
    for (const auto& part : {photograph, text, gradient, photograph, gradient})
        for (int row = 0; row < size.height(); ++row, ++y)
            std::copy_n(part.constScanLine(row), part.bytesPerLine(), image.scanLine(y));
    const auto png = pngData(image);
    EXPECT_EQ(inflatedPixels(png, qsizetype{image.height()} * (image.width() * 3 + 1)).size(),
              qsizetype{image.height()} * (image.width() * 3 + 1));
    EXPECT_EQ(comparable(decoded(png)), comparable(image));
}

TEST(PngEncoder, ofANullPictureIsEmpty) {
    EXPECT_TRUE(pngData({}).isEmpty());
}

} // namespace
