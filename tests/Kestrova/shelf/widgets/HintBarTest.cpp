#include "Kestrova/shelf/widgets/HintBar.h"

#include <QApplication>
#include <QImage>

#include <array>
#include <gtest/gtest.h>

namespace kestrova {
namespace {

constexpr std::array widths{50, 60, 40, 50};

TEST(HintLinesTest, HintsWithRoomStandAtTheirDistance) {
    EXPECT_EQ(HintLines::of(widths, 400), (HintLines{.spacing = 14, .counts = {4}}));
}

TEST(HintLinesTest, ThenTheyMoveCloserTogether) {
    EXPECT_EQ(HintLines::of(widths, 230), (HintLines{.spacing = 10, .counts = {4}}));
    EXPECT_EQ(HintLines::of(widths, 218), (HintLines{.spacing = 6, .counts = {4}}));
}

TEST(HintLinesTest, ThenTheyGoOnInAFurtherLineAsManyInEach) {
    EXPECT_EQ(HintLines::of(widths, 217), (HintLines{.spacing = 14, .counts = {2, 2}}));
    EXPECT_EQ(HintLines::of(widths, 124), (HintLines{.spacing = 14, .counts = {2, 2}}));
}

TEST(HintLinesTest, LinesAreUnevenRatherThanMore) {
    constexpr std::array uneven{20, 20, 100, 90};
    EXPECT_EQ(HintLines::of(uneven, 170), (HintLines{.spacing = 14, .counts = {3, 1}}));
}

TEST(HintLinesTest, OneThatIsTooWideStandsAlone) {
    EXPECT_EQ(HintLines::of(widths, 55), (HintLines{.spacing = 14, .counts = {1, 1, 1, 1}}));
}

TEST(HintLinesTest, NoHintsMakeNoLines) {
    EXPECT_TRUE(HintLines::of({}, 100).counts.empty());
}

class HintBarTest : public testing::Test {
protected:
    HintBarTest() {
        bar.render({{.symbols = {QStringLiteral("command")}, .letter = u"C"_qs, .label = u"복사"_qs},
                    {.symbols = {QStringLiteral("command")}, .letter = u"K"_qs, .label = u"액션"_qs},
                    {.symbols = {QStringLiteral("delete.left")}, .letter = {}, .label = u"삭제"_qs}},
                   ShelfTheme::of(ShelfTheme::Scheme::dark));
    }
    ~HintBarTest() override { QApplication::setFont(m_font); }

    void scaleFont(double factor) {
        auto font = m_font;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }

    /// Whether anything is drawn in the part of the bar, beside its even ground.
    bool isDrawnOn(const QRect& part) {
        QImage image(bar.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        bar.QWidget::render(&image, {}, {}, QWidget::DrawChildren);
        const auto ground = image.pixel(part.topLeft());
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                if (image.pixel(x, y) != ground)
                    return true;
        return false;
    }

    HintBar bar{nullptr};

private:
    const QFont m_font = QApplication::font();
};

TEST_F(HintBarTest, IsHigherWhereItIsTooNarrowForOneLine) {
    EXPECT_GT(bar.heightForWidth(120), bar.heightForWidth(460));
}

TEST_F(HintBarTest, GrowsWithTheFontOfTheDesktop) {
    const int before = bar.heightForWidth(460);
    scaleFont(2);
    EXPECT_GT(bar.heightForWidth(460), before);
}

TEST_F(HintBarTest, NothingIsCutOffAtAnyFontSize) {
    for (const double factor : {1.0, 1.5, 2.0}) {
        scaleFont(factor);
        bar.resize(464, bar.heightForWidth(464));
        constexpr int padding = 14;
        EXPECT_TRUE(isDrawnOn(bar.rect().adjusted(padding, 3, -padding, -3))) << factor;
        EXPECT_FALSE(isDrawnOn({2, 12, padding - 4, bar.height() - 24})) << factor;
        EXPECT_FALSE(isDrawnOn({464 - padding + 2, 12, padding - 4, bar.height() - 24})) << factor;
        EXPECT_FALSE(isDrawnOn({20, 2, 424, 4})) << factor;
        EXPECT_FALSE(isDrawnOn({20, bar.height() - 6, 424, 4})) << factor;
    }
}

} // namespace
} // namespace kestrova
