#include "tests/desktop/CommandConnection.h"
#include "tests/desktop/DesktopTest.h"

#include <QRegularExpression>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// One line that a person can read, and nothing else.
bool isOneLine(const QByteArray& message) {
    return message.size() > 1 && message.count('\n') == 1 && message.endsWith('\n');
}

class CommandLineTest : public DesktopTest {
protected:
    ProcessResult failing(const QStringList& arguments) {
        ProcessResult result = program.command(arguments);
        EXPECT_EQ(result.standardOutput, "") << arguments.join(u' ').toStdString();
        EXPECT_TRUE(isOneLine(result.standardError)) << result.standardError.toStdString();
        return result;
    }
};

TEST_F(CommandLineTest, HelpAndVersionNeedNoRunningProgram) {
    const ProcessResult help = program.command({u"--help"_s});
    EXPECT_EQ(help.exitStatus, 0);
    for (const char* verb :
         {"capture", "list", "get", "copy", "add", "pin", "delete", "status", "quit", "--help", "--version"})
        EXPECT_TRUE(help.standardOutput.contains(verb)) << verb;
    const ProcessResult version = program.command({u"--version"_s});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_TRUE(QRegularExpression(u"^kestrova \\d+\\.\\d+\\.\\d+\\n$"_s)
                    .match(QString::fromUtf8(version.standardOutput))
                    .hasMatch());
}

TEST_F(CommandLineTest, WithoutARunningProgramEachCommandEndsWithThree) {
    for (const QStringList& arguments :
         {QStringList{u"list"_s}, QStringList{u"get"_s, u"1"_s}, QStringList{u"copy"_s, u"1"_s},
          QStringList{u"add"_s, u"x"_s}, QStringList{u"status"_s}, QStringList{u"quit"_s}})
        EXPECT_EQ(failing(arguments).exitStatus, 3) << arguments.join(u' ').toStdString();
}

TEST_F(CommandLineTest, WrongUseEndsWithTwoWhetherTheProgramRunsOrNot) {
    const QList<QStringList> wrong{{u"frobnicate"_s},
                                   {u"--frobnicate"_s},
                                   {u"list"_s, u"--frobnicate"_s},
                                   {u"list"_s, u"--limit"_s},
                                   {u"list"_s, u"--limit"_s, u"many"_s},
                                   {u"list"_s, u"--limit"_s, u"-1"_s},
                                   {u"list"_s, u"extra"_s},
                                   {u"get"_s},
                                   {u"get"_s, u"one"_s},
                                   {u"copy"_s},
                                   {u"copy"_s, u"1"_s, u"2"_s},
                                   {u"add"_s},
                                   {u"quit"_s, u"now"_s}};
    for (const QStringList& arguments : wrong)
        EXPECT_EQ(failing(arguments).exitStatus, 2) << arguments.join(u' ').toStdString();
    ASSERT_TRUE(program.start());
    for (const QStringList& arguments : wrong)
        EXPECT_EQ(failing(arguments).exitStatus, 2) << arguments.join(u' ').toStdString();
}

TEST_F(CommandLineTest, AnUnknownIdEndsWithOne) {
    ASSERT_TRUE(program.start());
    for (const char16_t* verb : {u"get", u"copy", u"pin", u"delete"})
        EXPECT_EQ(failing({QString::fromUtf16(verb), u"987654"_s}).exitStatus, 1);
}

TEST_F(CommandLineTest, AnAddedTextIsListedAndPrinted) {
    ASSERT_TRUE(program.start());
    const ProcessResult added = program.command({u"add"_s, u"#123456"_s});
    ASSERT_EQ(added.exitStatus, 0);
    const QString id = QString::fromLatin1(added.standardOutput.trimmed());
    EXPECT_EQ(program.newestRow()[u"id"].toString(), id);
    EXPECT_EQ(program.newestRow()[u"rawType"].toString(), u"color"_s);
    EXPECT_EQ(program.command({u"get"_s, id}).standardOutput, "#123456");
}

TEST_F(CommandLineTest, AListIsLimitedAndSearched) {
    ASSERT_TRUE(program.start());
    for (const QString& text : {u"red apple"_s, u"green pear"_s, u"Green Apple"_s})
        ASSERT_EQ(program.command({u"add"_s, text}).exitStatus, 0);
    CommandConnection commands(session.busAddress());
    EXPECT_EQ(commands.rows(2)->size(), 2);
    EXPECT_EQ(commands.rows(2)->at(0)[u"content"].toString(), u"Green Apple"_s);
    const ProcessResult found = program.command({u"list"_s, u"--search"_s, u"APPLE"_s});
    EXPECT_TRUE(found.standardOutput.contains("red apple"));
    EXPECT_TRUE(found.standardOutput.contains("Green Apple"));
    EXPECT_FALSE(found.standardOutput.contains("pear"));
}

TEST_F(CommandLineTest, AnItemIsPinnedUnpinnedAndDeleted) {
    ASSERT_TRUE(program.start());
    const QString id = QString::fromLatin1(program.command({u"add"_s, u"x"_s}).standardOutput.trimmed());
    ASSERT_EQ(program.command({u"pin"_s, id}).exitStatus, 0);
    EXPECT_TRUE(program.newestRow()[u"pinned"].toBool());
    ASSERT_EQ(program.command({u"pin"_s, id}).exitStatus, 0);
    EXPECT_FALSE(program.newestRow()[u"pinned"].toBool());
    ASSERT_EQ(program.command({u"delete"_s, id}).exitStatus, 0);
    EXPECT_TRUE(program.rows().isEmpty());
}

TEST_F(CommandLineTest, TheStatusTellsOfTheRunningProgram) {
    ASSERT_TRUE(program.start());
    ASSERT_EQ(program.command({u"add"_s, u"x"_s}).exitStatus, 0);
    const QJsonObject status = program.status();
    EXPECT_EQ(status[u"pid"].toInteger(), program.process().pid());
    EXPECT_EQ(status[u"items"].toInteger(), 1);
    EXPECT_EQ(status[u"store"].toString(), program.storeFile());
    EXPECT_EQ(status[u"monitorEnabled"], QJsonValue(true));
    EXPECT_FALSE(status[u"version"].toString().isEmpty());
}

} // namespace
} // namespace kestrova::test
