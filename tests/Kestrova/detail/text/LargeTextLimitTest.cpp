#include "Kestrova/detail/text/LargeTextLimit.h"

#include <QString>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QString lines(qsizetype count, qsizetype length, const QString& end) {
    return (QString(length, u'x') + end).repeated(count);
}

TEST(LargeTextLimitTest, AnOrdinaryTextIsForTheToolkitsControl) {
    EXPECT_FALSE(needsLargeTextControl({}));
    EXPECT_FALSE(needsLargeTextControl(lines(1'000, 79, QStringLiteral("\n"))));
}

TEST(LargeTextLimitTest, AVeryLongTextIsNot) {
    EXPECT_FALSE(needsLargeTextControl(lines(1'250, 79, QStringLiteral("\n"))));
    EXPECT_TRUE(needsLargeTextControl(lines(1'251, 79, QStringLiteral("\n"))));
}

TEST(LargeTextLimitTest, ATextWithALongParagraphIsNot) {
    EXPECT_FALSE(needsLargeTextControl(lines(3, 10'000, QStringLiteral("\n"))));
    EXPECT_TRUE(
        needsLargeTextControl(QStringLiteral("short\n") + lines(1, 10'001, QStringLiteral("\nshort"))));
}

TEST(LargeTextLimitTest, EveryEndOfAParagraphCounts) {
    EXPECT_FALSE(needsLargeTextControl(lines(5, 9'000, QStringLiteral("\r"))));
    EXPECT_FALSE(needsLargeTextControl(lines(5, 9'000, QStringLiteral("\r\n"))));
    EXPECT_FALSE(needsLargeTextControl(lines(5, 9'000, QString(QChar(QChar::ParagraphSeparator)))));
    // To the toolkit that is another line of the same paragraph.
    EXPECT_TRUE(needsLargeTextControl(lines(5, 9'000, QString(QChar(QChar::LineSeparator)))));
}

} // namespace
} // namespace kestrova
