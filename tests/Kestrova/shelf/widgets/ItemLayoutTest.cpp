#include "Kestrova/shelf/widgets/ItemLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kestrova {
namespace {

struct Columns {
    int width;
    std::size_t columns;
};

class GridColumnCountTest : public testing::TestWithParam<Columns> {};

TEST_P(GridColumnCountTest, FollowsFromTheWidth) {
    EXPECT_EQ(gridColumnCount(GetParam().width), GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(Widths, GridColumnCountTest,
                         testing::Values(Columns{100, 1}, Columns{24, 1}, Columns{0, 1}, Columns{-5, 1},
                                         Columns{333, 1}, Columns{334, 2}, Columns{493, 2}, Columns{494, 3},
                                         Columns{653, 3}, Columns{664, 4}, Columns{654, 4}));

TEST(GridLayoutTest, CardsShareTheWidthWithinTheirBounds) {
    for (int width = 180; width < 2000; ++width) {
        const auto layout = gridLayout(1000, width, 136);
        ASSERT_GE(layout.cell.width(), width >= 174 ? 150 : 1) << width;
        ASSERT_LE(layout.cell.width(), 200) << width;
        const auto last = layout.cellRect(layout.columns - 1);
        ASSERT_LE(last.x() + last.width(), width - 12) << width;
        ASSERT_GE(layout.cellRect(0).x(), 12) << width;
        // What is left lies on both sides alike.
        ASSERT_NEAR(layout.cellRect(0).x(), width - (last.x() + last.width()),
                    static_cast<double>(layout.columns))
            << width;
    }
}

TEST(GridLayoutTest, ACardIsNeverWithoutWidth) {
    for (const int width : {0, 10, 24, 30})
        EXPECT_GE(gridLayout(3, width, 136).cell.width(), 1);
}

TEST(GridLayoutTest, HasThePaddingAllRoundAndTheSpacingBetween) {
    const auto layout = gridLayout(5, 662, 136);
    EXPECT_EQ(layout.cellRect(0), QRect(12, 12, 152, 136));
    EXPECT_EQ(layout.cellRect(1), QRect(12 + 162, 12, 152, 136));
    EXPECT_EQ(layout.cellRect(4), QRect(12, 12 + 146, 152, 136));
    EXPECT_EQ(layout.height(), 12 + 136 + 10 + 136 + 12);
}

TEST(ListLayoutTest, HasThePaddingAboveAndBelow) {
    const auto layout = listLayout(3, 300, 32);
    EXPECT_EQ(layout.cellRect(0), QRect(0, 8, 300, 32));
    EXPECT_EQ(layout.cellRect(2), QRect(0, 8 + 64, 300, 32));
    EXPECT_EQ(layout.height(), 8 + 96 + 8);
    EXPECT_EQ(listLayout(0, 300, 32).height(), 16);
}

class AnyLayoutTest : public testing::TestWithParam<ItemLayout> {};

TEST_P(AnyLayoutTest, APlaceBelongsToTheCellThatHoldsIt) {
    const auto& layout = GetParam();
    for (int y = -3; y < layout.height() + 40; ++y)
        for (int x = -3; x < 700; x += 3) {
            std::optional<std::size_t> expected;
            for (std::size_t i = 0; i < layout.count; ++i)
                if (layout.cellRect(i).contains(x, y))
                    expected = i;
            ASSERT_EQ(layout.indexAt({x, y}), expected) << x << ", " << y;
        }
}

TEST_P(AnyLayoutTest, WhatLiesBetweenTwoHeightsIsWhatAWalkOverAllCellsFinds) {
    const auto& layout = GetParam();
    for (int top = -50; top < layout.height() + 50; top += 7)
        for (const int height : {0, 1, 9, 10, 11, 150, 400}) {
            std::vector<std::size_t> expected;
            for (std::size_t i = 0; i < layout.count; ++i) {
                const auto cell = layout.cellRect(i);
                if (cell.y() < top + height && cell.y() + cell.height() > top)
                    expected.push_back(i);
            }
            const auto range = layout.cellsBetween(top, top + height);
            if (height == 0 || expected.empty()) {
                ASSERT_EQ(range.begin, range.end) << top << " + " << height;
                continue;
            }
            ASSERT_EQ(range, (ItemLayout::Range{expected.front(), expected.back() + 1}))
                << top << " + " << height;
        }
}

INSTANTIATE_TEST_SUITE_P(Layouts, AnyLayoutTest,
                         testing::Values(listLayout(0, 300, 32), listLayout(1, 300, 32),
                                         listLayout(7, 300, 32), gridLayout(0, 664, 136),
                                         gridLayout(1, 664, 136), gridLayout(10, 664, 136),
                                         gridLayout(12, 664, 136), gridLayout(3, 100, 136), ItemLayout{}));

TEST(ItemLayoutTest, AHundredThousandRowsAreAsExactAsTen) {
    const auto layout = listLayout(100'000, 500, 50);
    EXPECT_EQ(layout.height(), 16 + 5'000'000);
    EXPECT_EQ(layout.indexAt({10, layout.cellRect(99'999).center().y()}), 99'999U);
    EXPECT_EQ(layout.indexAt({10, layout.height() - 1}), std::nullopt);
}

} // namespace
} // namespace kestrova
