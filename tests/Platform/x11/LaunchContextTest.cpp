#include "Platform/x11/LaunchContext.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// Absent if an application does not get the variable.
std::optional<QByteArray> given(GAppLaunchContext& context, const QByteArray& variable) {
    const std::unique_ptr<char*, decltype(&g_strfreev)> environment(
        g_app_launch_context_get_environment(&context), &g_strfreev);
    const char* const value = g_environ_getenv(environment.get(), variable.constData());
    return value ? std::optional(QByteArray(value)) : std::nullopt;
}

TEST(LaunchContextTest, EveryTokenIsNewAndEndsWithTheMoment) {
    const auto token = makeActivationToken();
    EXPECT_TRUE(QRegularExpression(u"^kestrova-.+_TIME\\d+$"_s).match(QString::fromUtf8(token)).hasMatch())
        << token.toStdString();
    EXPECT_NE(makeActivationToken(), token);
}

TEST(LaunchContextTest, EveryProgramGetsATokenOfItsOwnInItsEnvironment) {
    const auto token = given(*makeLaunchContext(), "DESKTOP_STARTUP_ID");
    ASSERT_TRUE(token);
    EXPECT_TRUE(token->contains("_TIME"));
    EXPECT_NE(given(*makeLaunchContext(), "DESKTOP_STARTUP_ID"), token);
}

TEST(LaunchContextTest, WhatThisProgramSetsForItselfIsNotPassedOn) {
    const auto before = qgetenv("QT_QPA_PLATFORM");
    const bool hadOne = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    const auto atStart = given(*makeLaunchContext(), "QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "changed since");
    EXPECT_EQ(given(*makeLaunchContext(), "QT_QPA_PLATFORM"), atStart);
    if (hadOne)
        qputenv("QT_QPA_PLATFORM", before);
    else
        qunsetenv("QT_QPA_PLATFORM");
}

TEST(LaunchContextTest, TheRestOfTheEnvironmentIs) {
    qputenv("KESTROVA_LAUNCH_TEST", "here");
    EXPECT_EQ(given(*makeLaunchContext(), "KESTROVA_LAUNCH_TEST"), "here");
    qunsetenv("KESTROVA_LAUNCH_TEST");
}

} // namespace
} // namespace kestrova
