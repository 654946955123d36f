#include "Kestrova/look/Spring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr Spring::Traits traits{
    .response = std::chrono::duration<double>(0.32), .dampingFraction = 0.82, .precision = 0.001};

TEST(SpringTest, StandsStillUntilItsTargetMoves) {
    Spring spring(traits, 3);
    EXPECT_TRUE(spring.isAtRest());
    spring.advance(1s);
    EXPECT_EQ(spring.value(), 3);
    spring.setTarget(4);
    EXPECT_FALSE(spring.isAtRest());
    EXPECT_EQ(spring.value(), 3);
    EXPECT_EQ(spring.target(), 4);
}

TEST(SpringTest, ShootsPastItsTargetByWhatItsDampingLeavesAndComesToRestThere) {
    Spring spring(traits, 0);
    spring.setTarget(1);
    double highest = 0;
    auto passed = 0ms;
    for (; !spring.isAtRest() && passed < 10s; passed += 1ms) {
        spring.advance(1ms);
        highest = std::max(highest, spring.value());
    }
    // exp(-pi z / sqrt(1 - z^2)) for z = 0.82.
    EXPECT_NEAR(highest, 1.0111, 0.0005);
    EXPECT_EQ(spring.value(), 1);
    EXPECT_GT(passed, 250ms);
    EXPECT_LT(passed, 600ms);
}

TEST(SpringTest, IsWhereItIsHoweverTheTimeIsCut) {
    Spring coarse(traits, 0);
    Spring fine(traits, 0);
    coarse.setTarget(100);
    fine.setTarget(100);
    coarse.advance(120ms);
    for (int i = 0; i < 120; ++i)
        fine.advance(1ms);
    EXPECT_NEAR(coarse.value(), fine.value(), 1e-9);
    EXPECT_GT(coarse.value(), 50);
    EXPECT_LT(coarse.value(), 100);
}

TEST(SpringTest, KeepsItsPlaceAndItsSpeedWhenTheTargetChangesOnTheWay) {
    Spring spring(traits, 0);
    spring.setTarget(100);
    spring.advance(60ms);
    const double before = spring.value();
    spring.setTarget(0);
    EXPECT_NEAR(spring.value(), before, 1e-9);
    spring.advance(2ms);
    EXPECT_GT(spring.value(), before) << "it goes on for a moment";
    spring.advance(10s);
    EXPECT_EQ(spring.value(), 0);
}

TEST(SpringTest, FinishesAtOnce) {
    Spring spring(traits, 0);
    spring.setTarget(7);
    spring.advance(50ms);
    spring.finish();
    EXPECT_TRUE(spring.isAtRest());
    EXPECT_EQ(spring.value(), 7);
}

} // namespace
} // namespace kestrova
