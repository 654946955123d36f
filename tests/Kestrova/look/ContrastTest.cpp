#include "Kestrova/look/Contrast.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(ContrastTest, IsThatOfTheGuidelines) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast(Qt::white, Qt::white), 1, 0.01);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
    EXPECT_EQ(contrast(Qt::red, Qt::white), contrast(Qt::white, Qt::red));
}

TEST(ContrastTest, AColourThatCanBeSeenStaysAsItIs) {
    EXPECT_EQ(withContrast(QColor(255, 159, 10), QColor(30, 30, 34), 3), QColor(255, 159, 10));
}

TEST(ContrastTest, OneThatCannotIsMadeLighterOrDarkerUntilItCan) {
    for (const QColor ground : {QColor(30, 30, 34), QColor(246, 246, 248)})
        for (const QColor color : {QColor(Qt::yellow), QColor(Qt::black), QColor(Qt::white), ground})
            EXPECT_GE(contrast(withContrast(color, ground, 3.2), ground), 3.2)
                << qPrintable(color.name()) << " on " << qPrintable(ground.name());
}

TEST(ContrastTest, WhatIsHalfTransparentIsSeenAsTheMean) {
    EXPECT_EQ(blended(QColor(255, 255, 255, 0), Qt::black).rgb(), QColor(Qt::black).rgb());
    EXPECT_NEAR(blended(QColor(255, 255, 255, 128), Qt::black).red(), 128, 1);
}

} // namespace
} // namespace kestrova
