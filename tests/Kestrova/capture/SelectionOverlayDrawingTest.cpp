#include "Kestrova/capture/SelectionOverlayDrawing.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ScreenRect kBounds{0, 0, 60, 40};

bool lie(const ScreenRect& rect, QPointF point) {
    return rect.contains(point);
}

/// What is to be seen at a point.
struct Look {
    bool isDimmed = true;
    bool isStroked = false;
    std::vector<OverlayBadge> badges;

    bool operator==(const Look&) const = default;
};

Look lookAt(const OverlayDrawing& drawing, QPointF point) {
    Look look;
    look.isDimmed = !drawing.hole || !lie(*drawing.hole, point);
    if (drawing.stroke) {
        const auto& line = *drawing.stroke;
        const double half = OverlayDrawing::strokeWidth / 2;
        look.isStroked =
            lie({line.x - half, line.y - half, line.width + 2 * half, line.height + 2 * half}, point) &&
            !lie({line.x + half, line.y + half, line.width - 2 * half, line.height - 2 * half}, point);
    }
    std::ranges::copy_if(drawing.badges, std::back_inserter(look.badges),
                         [&](const OverlayBadge& badge) { return lie(badge.frame, point); });
    return look;
}

class ChangedRectsTest : public testing::Test {
protected:
    double between(int least, int most) {
        return std::uniform_int_distribution(4 * least, 4 * most)(m_random) / 4.0;
    }
    bool chance() { return std::bernoulli_distribution(0.5)(m_random); }
    static OverlayBadge badge(const ScreenRect& frame) {
        OverlayBadge made;
        made.frame = frame;
        return made;
    }
    OverlayDrawing anyDrawing() {
        OverlayDrawing drawing;
        if (chance()) {
            drawing.hole = ScreenRect{between(-20, 60), between(-20, 40), between(1, 50), between(1, 50)};
            if (chance())
                drawing.stroke = ScreenRect{drawing.hole->x - 0.5, drawing.hole->y - 0.5,
                                            drawing.hole->width + 1, drawing.hole->height + 1};
        }
        if (chance())
            drawing.badges.push_back(badge({between(-10, 50), between(-10, 30), 12, 6}));
        if (chance())
            drawing.badges.push_back(badge({10, 30, 30, 5}));
        return drawing;
    }

private:
    std::mt19937 m_random{7};
};

TEST_F(ChangedRectsTest, NothingWhereNothingChanges) {
    for (int round = 0; round < 50; ++round) {
        const auto drawing = anyDrawing();
        EXPECT_THAT(changedRects(drawing, drawing, kBounds), IsEmpty());
    }
}

TEST_F(ChangedRectsTest, EveryPointThatLooksOtherwiseLiesInThemWithThePixelAround) {
    for (int round = 0; round < 500; ++round) {
        const auto before = anyDrawing();
        const auto after = anyDrawing();
        const auto changed = changedRects(before, after, kBounds);
        for (double x = 0.125; x < kBounds.width; x += 0.25) {
            for (double y = 0.125; y < kBounds.height; y += 0.25) {
                const QPointF point{x, y};
                if (lookAt(before, point) == lookAt(after, point))
                    continue;
                const ScreenRect pixel{std::floor(x), std::floor(y), 1, 1};
                for (const auto corner :
                     {QPointF(pixel.x, pixel.y), QPointF(pixel.x + 0.875, pixel.y + 0.875)})
                    ASSERT_TRUE(std::ranges::any_of(
                        changed, [&](const ScreenRect& rect) { return rect.contains(corner); }))
                        << "round " << round << " at " << x << ", " << y;
            }
        }
    }
}

TEST_F(ChangedRectsTest, ThereIsNothingBeyondTheDisplay) {
    for (int round = 0; round < 200; ++round) {
        for (const auto& rect : changedRects(anyDrawing(), anyDrawing(), kBounds)) {
            EXPECT_GE(rect.x, 0);
            EXPECT_GE(rect.y, 0);
            EXPECT_LE(rect.maxX(), kBounds.maxX());
            EXPECT_LE(rect.maxY(), kBounds.maxY());
        }
    }
}

TEST_F(ChangedRectsTest, ADragPaintsNoMoreThanTheEdgesThatMove) {
    constexpr ScreenRect display{0, 0, 3840, 2160};
    OverlayDrawing before;
    before.hole = ScreenRect{100, 100, 2000, 1500};
    before.stroke = ScreenRect{99.5, 99.5, 2001, 1501};
    OverlayDrawing after;
    after.hole = ScreenRect{100, 100, 2010, 1505};
    after.stroke = ScreenRect{99.5, 99.5, 2011, 1506};
    const auto changed = changedRects(before, after, display);
    const double area =
        std::accumulate(changed.begin(), changed.end(), 0.0,
                        [](double sum, const ScreenRect& rect) { return sum + rect.width * rect.height; });
    EXPECT_LT(area, 0.02 * display.width * display.height);
}

TEST_F(ChangedRectsTest, AnotherPictureBelowIsAnotherDisplay) {
    OverlayDrawing before;
    OverlayDrawing after;
    after.background = QImage(4, 4, QImage::Format_RGB32);
    EXPECT_THAT(changedRects(before, after, kBounds), ElementsAre(kBounds));
    EXPECT_THAT(changedRects(after, before, kBounds), ElementsAre(kBounds));
    before.background = after.background;
    EXPECT_THAT(changedRects(before, after, kBounds), IsEmpty());
    EXPECT_EQ(before, after);
}

TEST(CrosshairTest, LeavesAGapAroundItsHotSpotAndStaysInItsPicture) {
    for (const auto& segment : Crosshair::segments) {
        for (const auto end : {segment.from, segment.to}) {
            const auto fromHotSpot = end - Crosshair::hotSpot;
            EXPECT_TRUE(fromHotSpot.x() == 0 || fromHotSpot.y() == 0);
            EXPECT_GE(fromHotSpot.manhattanLength(), 3);
            EXPECT_LE(fromHotSpot.manhattanLength(), 9);
        }
    }
    double widest = 0;
    for (const auto& stroke : Crosshair::strokes)
        widest = std::max(widest, stroke.width);
    EXPECT_LE(9 + widest / 2, Crosshair::side / 2);
}

} // namespace
} // namespace kestrova
