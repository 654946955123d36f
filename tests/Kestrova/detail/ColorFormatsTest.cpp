#include "Kestrova/detail/ColorFormats.h"

#include <QByteArray>
#include <QLocale>

#include <gmock/gmock.h>

#include <array>
#include <clocale>
#include <cmath>
#include <limits>
#include <random>

namespace kestrova {

void PrintTo(const RGBA& color, std::ostream* stream) {
    *stream << color.r << ' ' << color.g << ' ' << color.b << ' ' << color.a;
}

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

RGBA bytes(int r, int g, int b, double a = 1) {
    return {r / 255.0, g / 255.0, b / 255.0, a};
}

// Reading

struct ColorSample {
    QString text;
    std::optional<RGBA> color;

    friend void PrintTo(const ColorSample& sample, std::ostream* stream) {
        *stream << sample.text.toStdString();
    }
};

class ParseColorTest : public testing::TestWithParam<ColorSample> {};

TEST_P(ParseColorTest, ReadsOrRefuses) {
    EXPECT_EQ(parseColor(GetParam().text), GetParam().color) << qPrintable(GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Hexadecimal, ParseColorTest,
                         testing::Values(ColorSample{u"#abc"_qs, RGBA{10 / 15.0, 11 / 15.0, 12 / 15.0, 1}},
                                         ColorSample{u"#AbCdEf"_qs, bytes(0xab, 0xcd, 0xef)},
                                         ColorSample{u"#11223344"_qs, bytes(0x11, 0x22, 0x33, 0x44 / 255.0)},
                                         ColorSample{u"#ffffffff"_qs, RGBA{1, 1, 1, 1}},
                                         ColorSample{u"#00000000"_qs, RGBA{0, 0, 0, 0}},
                                         ColorSample{u" \n#ff0000\t\r\n"_qs, bytes(255, 0, 0)},
                                         ColorSample{u"\u00a0#ff0000\u2028"_qs, bytes(255, 0, 0)},
                                         ColorSample{u"#"_qs, {}}, ColorSample{u"#1"_qs, {}},
                                         ColorSample{u"#12"_qs, {}}, ColorSample{u"#1234"_qs, {}},
                                         ColorSample{u"#12345"_qs, {}}, ColorSample{u"#1234567"_qs, {}},
                                         ColorSample{u"#123456789"_qs, {}}, ColorSample{u"#12345g"_qs, {}},
                                         ColorSample{u"#+1234f"_qs, {}}, ColorSample{u"#-12"_qs, {}},
                                         ColorSample{u"#0x1234"_qs, {}}, ColorSample{u"# 12345"_qs, {}},
                                         ColorSample{u"##12345"_qs, {}}, ColorSample{u"#１２３"_qs, {}},
                                         ColorSample{u"123456"_qs, {}}));

INSTANTIATE_TEST_SUITE_P(
    Functions, ParseColorTest,
    testing::Values(
        ColorSample{u"rgb(255, 0, 0)"_qs, bytes(255, 0, 0)},
        ColorSample{u"RGB(255 0 0)"_qs, bytes(255, 0, 0)},
        ColorSample{u"rgb(100%, 0, 0)"_qs, bytes(100, 0, 0)},
        ColorSample{u"rgb(%1%0%0%, 0, 0)"_qs, bytes(100, 0, 0)},
        ColorSample{u"rgb(,1,, 2 ,3,)"_qs, bytes(1, 2, 3)}, ColorSample{u"rgb(1,\t2,\t3)"_qs, bytes(1, 2, 3)},
        ColorSample{u"rgb(1\t2\n3)"_qs, bytes(1, 2, 3)}, ColorSample{u"rgb(1, 2)"_qs, {}},
        ColorSample{u"rgb(1, 2, 3, 4)"_qs, {}}, ColorSample{u"rgb(1, x, 2, 3)"_qs, bytes(1, 2, 3)},
        ColorSample{u"rgb(1, %, 2, 3)"_qs, bytes(1, 2, 3)}, ColorSample{u"rgba(1, 2, 3)"_qs, {}},
        ColorSample{u"rgba(1, 2, 3, 0.5)"_qs, bytes(1, 2, 3, 0.5)},
        ColorSample{u"rgba(1, 2, 3, 50%)"_qs, bytes(1, 2, 3, 50)},
        ColorSample{u"rgba(1 2 3 / 0.5)"_qs, bytes(1, 2, 3, 0.5)}, ColorSample{u"rgb()"_qs, {}},
        ColorSample{u"rgb"_qs, {}}, ColorSample{u"rgb(1, 2, 3"_qs, {}}, ColorSample{u"rgb 1, 2, 3)"_qs, {}},
        ColorSample{u"rgb)1,2,3("_qs, {}}, ColorSample{u"rgb (1, 2, 3)"_qs, {}},
        ColorSample{u"(1, 2, 3)"_qs, {}}, ColorSample{u"rgb(1, 2, 3) or so"_qs, bytes(1, 2, 3)},
        ColorSample{u"rgb((1), 2, 3, 4)"_qs, bytes(2, 3, 4)}, ColorSample{u"lab(1, 2, 3)"_qs, {}},
        ColorSample{u"hſl(120, 100%, 50%)"_qs, {}}, ColorSample{u""_qs, {}}, ColorSample{u" "_qs, {}}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, ParseColorTest,
    testing::Values(ColorSample{u"rgb(1e2, +5, -5)"_qs, bytes(100, 5, -5)},
                    ColorSample{u"rgb(.5, 5., 007)"_qs, RGBA{0.5 / 255, 5 / 255.0, 7 / 255.0, 1}},
                    ColorSample{u"rgb(1e300, 300, -1)"_qs, RGBA{1e300 / 255, 300 / 255.0, -1 / 255.0, 1}},
                    ColorSample{u"rgb(0x10, 1, 2)"_qs, {}}, ColorSample{u"rgb(inf, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(-infinity, 1, 2)"_qs, {}}, ColorSample{u"rgb(nan, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(1e999, 1, 2)"_qs, {}}, ColorSample{u"rgb(1e, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(1-, 1, 2)"_qs, {}}, ColorSample{u"rgb(--1, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(1.2.3, 1, 2)"_qs, {}}, ColorSample{u"rgb(１, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(\u22121, 1, 2)"_qs, {}}, ColorSample{u"rgb(٣, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(++1, 1, 2)"_qs, {}}, ColorSample{u"rgb(+-1, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(+, 1, 2)"_qs, {}}, ColorSample{u"rgb(1é, 1, 2)"_qs, {}},
                    ColorSample{u"rgb(1e-999, 1, 2)"_qs, {}}));

INSTANTIATE_TEST_SUITE_P(Hues, ParseColorTest,
                         testing::Values(ColorSample{u"hsl(120, 100%, 50%)"_qs, RGBA{0, 1, 0, 1}},
                                         ColorSample{u"hsl(360, 100%, 50%)"_qs, RGBA{1, 0, 0, 1}},
                                         ColorSample{u"hsl(480, 100%, 50%)"_qs, RGBA{0, 1, 0, 1}},
                                         ColorSample{u"hsl(0, 100%, 50%)"_qs, RGBA{1, 0, 0, 1}},
                                         ColorSample{u"hsl(60, 100, 50)"_qs, RGBA{1, 1, 0, 1}},
                                         ColorSample{u"hsl(180, 100, 50)"_qs, RGBA{0, 1, 1, 1}},
                                         ColorSample{u"hsl(240, 100, 50)"_qs, RGBA{0, 0, 1, 1}},
                                         ColorSample{u"hsl(300, 100, 50)"_qs, RGBA{1, 0, 1, 1}},
                                         ColorSample{u"hsl(30, 100%, 50%)"_qs, RGBA{1, 0.5, 0, 1}},
                                         ColorSample{u"HSL(0 0% 50%)"_qs, RGBA{0.5, 0.5, 0.5, 1}},
                                         ColorSample{u"hsl(-120, 100%, 50%)"_qs, RGBA{0, 0, 0, 1}},
                                         ColorSample{u"hsl(-120, 50%, 50%)"_qs, RGBA{0.25, 0.25, 0.25, 1}},
                                         ColorSample{u"hsla(240, 100%, 50%, 0)"_qs, RGBA{0, 0, 1, 0}},
                                         ColorSample{u"hsla(240, 100%, 50%)"_qs, {}},
                                         ColorSample{u"hsl(240, 100%, 50%, 0)"_qs, {}},
                                         ColorSample{u"hsl(60deg, 100%, 50%)"_qs, {}},
                                         ColorSample{u"hsl(0, 1e300, 1e300)"_qs, {}}));

TEST(ColorFormatsTest, ThreeDigitsNameTheSameColourAsTheirSix) {
    EXPECT_EQ(hexString(*parseColor(u"#abc")), u"#AABBCC");
}

// Writing

TEST(ColorFormatsTest, AHalfTransparentColourEndsInItsAlpha) {
    const RGBA color{1, 0, 0, 0.5};
    EXPECT_EQ(hexString(color), u"#FF000080");
    EXPECT_EQ(rgbString(color), u"rgba(255, 0, 0, 0.50)");
    EXPECT_EQ(hslString(color), u"hsla(0, 100%, 50%, 0.50)");
}

TEST(ColorFormatsTest, AnOpaqueColourIsWrittenInTheShortFormWhicheverItCameFrom) {
    for (const auto& text : {u"#ff8000ff"_qs, u"rgba(255, 128, 0, 1)"_qs, u"#FF8000"_qs}) {
        const auto color = *parseColor(text);
        EXPECT_EQ(hexString(color), u"#FF8000");
        EXPECT_EQ(rgbString(color), u"rgb(255, 128, 0)");
        EXPECT_EQ(hslString(color), u"hsl(30, 100%, 50%)");
    }
}

TEST(ColorFormatsTest, AnAlphaAboveOneIsNotWritten) {
    EXPECT_EQ(hexString({0, 0, 0, 50}), u"#000000");
    EXPECT_EQ(rgbString({0, 0, 0, 50}), u"rgb(0, 0, 0)");
    EXPECT_EQ(hslString({0, 0, 0, infinity}), u"hsl(0, 0%, 0%)");
}

TEST(ColorFormatsTest, AlphaIsRoundedOnlyWhereItIsWritten) {
    EXPECT_EQ(rgbString({0, 0, 0, 0.999}), u"rgba(0, 0, 0, 1.00)");
    EXPECT_EQ(hexString({0, 0, 0, 0.999}), u"#000000FF");
    EXPECT_EQ(rgbString({0, 0, 0, 0.004}), u"rgba(0, 0, 0, 0.00)");
}

TEST(ColorFormatsTest, AHalfOfTheLastDigitGoesToTheEvenOne) {
    EXPECT_EQ(rgbString({0, 0, 0, 0.125}), u"rgba(0, 0, 0, 0.12)");
    EXPECT_EQ(rgbString({0, 0, 0, 0.375}), u"rgba(0, 0, 0, 0.38)");
    EXPECT_EQ(hslString({0.125, 0.125, 0.125, 1}), u"hsl(0, 0%, 12%)");
}

TEST(ColorFormatsTest, ChannelsAreRoundedToTheNearest) {
    EXPECT_EQ(rgbString({0.4 / 255, 0.5 / 255, 254.6 / 255, 1}), u"rgb(0, 1, 255)");
    EXPECT_EQ(rgbString({-0.4 / 255, -0.6 / 255, 0, 1}), u"rgb(0, -1, 0)");
}

TEST(ColorFormatsTest, NothingDrawsChannelsIn) {
    const RGBA color{2, -1, 0.5, -0.5};
    EXPECT_EQ(rgbString(color), u"rgba(510, -255, 128, -0.50)");
    EXPECT_EQ(hexString(color), u"#1FEFFFFFF0180FFFFFF80");
    EXPECT_EQ(hslString({2, 2, 2, 1}), u"hsl(0, 0%, 200%)");
}

TEST(ColorFormatsTest, WhatNoNumberHoldsBecomesTheNearestThatDoes) {
    EXPECT_EQ(rgbString({1e300, -1e300, notANumber, 1}), u"rgb(2147483647, -2147483648, 0)");
    EXPECT_EQ(rgbString({infinity, -infinity, notANumber, notANumber}), u"rgb(2147483647, -2147483648, 0)");
    EXPECT_EQ(hexString({infinity, -infinity, notANumber, -infinity}), u"#7FFFFFFF800000000080000000");
    EXPECT_EQ(rgbString({0, 0, 0, -std::numeric_limits<double>::max()}).size(), 14 + 1 + 309 + 3 + 1);
}

TEST(ColorFormatsTest, ASaturationWithoutABoundIsTheLargestNumber) {
    const auto largest = QString::fromLatin1(QByteArray::number(std::numeric_limits<double>::max(), 'f', 0));
    EXPECT_EQ(hslString(*parseColor(u"rgb(510, 0, 0)")), u"hsl(0, %1%, 100%)"_qs.arg(largest));
    EXPECT_EQ(hslString(*parseColor(u"rgb(255, -255, 0)")), u"hsl(330, %1%, 0%)"_qs.arg(largest));
}

TEST(ColorFormatsTest, WhateverTheChannelsAreTheFormsAreDigits) {
    const auto values = {0.0, 1.0, 2.0, -1.0, 1e300, -1e300, infinity, -infinity, notANumber};
    for (const double r : values)
        for (const double g : values)
            for (const double b : values)
                for (const double a : values)
                    for (const auto& form :
                         {hexString({r, g, b, a}), rgbString({r, g, b, a}), hslString({r, g, b, a})})
                        ASSERT_FALSE(form.contains(u'n')) << qPrintable(form);
}

TEST(ColorFormatsTest, TheDesktopsDecimalCommaStaysOut) {
    const auto* const former = std::setlocale(LC_ALL, nullptr);
    const QByteArray kept(former);
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_EQ(rgbString({0, 0, 0, 0.5}), u"rgba(0, 0, 0, 0.50)");
    EXPECT_EQ(hslString({1, 1, 1, 0.5}), u"hsla(0, 0%, 100%, 0.50)");
    EXPECT_EQ(parseColor(u"rgba(0, 0, 0, 0.5)"), (RGBA{0, 0, 0, 0.5}));
    QLocale::setDefault(QLocale::c());
    std::setlocale(LC_ALL, kept.constData());
}

// Hue, saturation and lightness

TEST(ColorFormatsTest, AGreyHasNeitherHueNorSaturation) {
    for (const double grey : {0.0, 0.25, 1.0, 3.0, -1.0})
        EXPECT_EQ(hsl(grey, grey, grey), (HSL{0, 0, grey}));
}

TEST(ColorFormatsTest, EachPureColourHasItsHue) {
    EXPECT_EQ(hsl(1, 0, 0), (HSL{0, 1, 0.5}));
    EXPECT_EQ(hsl(1, 1, 0), (HSL{60, 1, 0.5}));
    EXPECT_EQ(hsl(0, 1, 0), (HSL{120, 1, 0.5}));
    EXPECT_EQ(hsl(0, 1, 1), (HSL{180, 1, 0.5}));
    EXPECT_EQ(hsl(0, 0, 1), (HSL{240, 1, 0.5}));
    EXPECT_EQ(hsl(1, 0, 1), (HSL{300, 1, 0.5}));
}

TEST(ColorFormatsTest, LightAndDarkColoursAreSaturatedByTheirOwnRule) {
    EXPECT_EQ(hsl(1, 0.5, 0.5), (HSL{0, 1, 0.75}));
    EXPECT_EQ(hsl(0.5, 0.25, 0.25), (HSL{0, 1.0 / 3, 0.375}));
    EXPECT_EQ(hslString(*parseColor(u"#bf4040")), u"hsl(0, 50%, 50%)");
}

// Round trips

TEST(ColorFormatsTest, EveryColourOfEightBitsSurvivesItsHexadecimalAndItsDecimalForm) {
    constexpr std::array steps{0,   1,   2,   15,  16,  17,  51,  63,  64,  85,  99, 100,
                               127, 128, 129, 153, 170, 191, 204, 240, 253, 254, 255};
    const auto check = [](int r, int g, int b) {
        const auto color = bytes(r, g, b);
        EXPECT_EQ(parseColor(hexString(color)), color);
        EXPECT_EQ(parseColor(rgbString(color)), color);
    };
    for (const int r : steps)
        for (const int g : steps)
            for (const int b : steps)
                check(r, g, b);
    std::mt19937 random(20'231);
    std::uniform_int_distribution channel(0, 255);
    for (int i = 0; i < 50'000; ++i)
        check(channel(random), channel(random), channel(random));
}

TEST(ColorFormatsTest, EveryAlphaOfEightBitsSurvivesItsHexadecimalForm) {
    for (int alpha = 0; alpha <= 255; ++alpha) {
        const auto color = bytes(1, 2, 3, alpha / 255.0);
        EXPECT_EQ(parseColor(hexString(color)), color);
        EXPECT_NEAR(parseColor(rgbString(color))->a, color.a, 0.005);
    }
}

TEST(ColorFormatsTest, HueSaturationAndLightnessComeBackWithinTheRounding) {
    std::mt19937 random(7);
    std::uniform_real_distribution channel(0.0, 1.0);
    for (int i = 0; i < 50'000; ++i) {
        const RGBA color{channel(random), channel(random), channel(random), 1};
        const auto [hue, saturation, lightness] = hsl(color.r, color.g, color.b);
        const auto exact = parseColor(u"hsl(%1, %2, %3)"_qs.arg(hue, 0, 'g', 17)
                                          .arg(saturation * 100, 0, 'g', 17)
                                          .arg(lightness * 100, 0, 'g', 17));
        const auto written = parseColor(hslString(color));
        for (const auto channelOf : {&RGBA::r, &RGBA::g, &RGBA::b}) {
            ASSERT_NEAR((*exact).*channelOf, color.*channelOf, 1e-9);
            // Half a degree moves a channel by at most 1/120, half a hundredth by about as much each.
            ASSERT_NEAR((*written).*channelOf, color.*channelOf, 0.5 / 60 + 0.01)
                << qPrintable(hslString(color));
        }
    }
}

} // namespace
} // namespace kestrova
