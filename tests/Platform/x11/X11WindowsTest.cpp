#include "Platform/x11/X11Windows.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(ProcessStatusTest, TheStartTimeIsTheTwentySecondField) {
    const auto rest = " S 1 1 1 0 -1 4194560 100 0 0 0 1 2 3 4 20 0 1 0 987654 1000 200"_ba;
    EXPECT_EQ(startTimeInProcessStatus("42 (name)" + rest), 987654U);
    EXPECT_EQ(startTimeInProcessStatus("42 (a) b (c d)) e)" + rest), 987654U);
}

TEST(ProcessStatusTest, AnythingElseHasNoStartTime) {
    for (const QByteArray status : {"", "42", "42 (name)", "42 (name) S 1 1", "42 (name", "garbage garbage"})
        EXPECT_EQ(startTimeInProcessStatus(status), 0U) << status.constData();
}

TEST(ProcessStatusTest, AProcessOfWhichOnlyTheExitStatusIsLeftHasNoStartTime) {
    EXPECT_EQ(startTimeInProcessStatus("42 (name) Z 1 1 1 0 -1 4194560 100 0 0 0 1 2 3 4 20 0 1 0 987654 0"),
              0U);
}

TEST(ProcessTest, ThisProcessTellsItsFacts) {
    EXPECT_GT(processStartTime(::getpid()), 0U);
    EXPECT_FALSE(executableName(::getpid()).isEmpty());
}

TEST(ProcessTest, AProcessThatIsNotThereTellsNothing) {
    EXPECT_EQ(processStartTime(0), 0U);
    EXPECT_EQ(executableName(0), QString{});
}

TEST(WindowClassTest, TheTwoHalvesAreReadFromAnyValue) {
    struct Row {
        QByteArray value;
        WindowClass windowClass;
    };
    const std::vector<Row> rows{
        {QByteArray("xterm\0XTerm\0", 12), {u"xterm"_s, u"XTerm"_s}},
        {QByteArray("xterm\0XTerm", 11), {u"xterm"_s, u"XTerm"_s}},
        {"xterm", {u"xterm"_s, u""_s}},
        {QByteArray("\0XTerm\0", 7), {u""_s, u"XTerm"_s}},
        {QByteArray("a\0b\0c\0", 6), {u"a"_s, u"b"_s}},
        {QByteArray("\0", 1), {}},
        {"", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(windowClassFromProperty(row.value), row.windowClass) << row.value.toHex().constData();
}

} // namespace
} // namespace kestrova
