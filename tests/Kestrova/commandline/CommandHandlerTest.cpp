#include "Kestrova/commandline/CommandHandler.h"

#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/commandline/ItemListing.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/Ports.h"
#include "tests/support/RecordingHUD.h"
#include "tests/support/StoreFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {
namespace {

class CommandHandlerTest : public StoreFixture {
protected:
    CommandReply run(const QStringList& arguments) { return m_handler.run(arguments); }
    CommandReply run(const char* line) { return run(QString::fromUtf8(line).split(u' ')); }
    QJsonArray listed(const char* line) { return QJsonDocument::fromJson(run(line).standardOutput).array(); }
    QStringList contents(const char* line) {
        QStringList found;
        for (const auto& each : listed(line))
            found.append(each.toObject().value(u"content").toString());
        return found;
    }
    std::shared_ptr<ClipboardItem> insert(const std::shared_ptr<ClipboardItem>& item) {
        m_writer.insert(item);
        EXPECT_TRUE(m_writer.save());
        return item;
    }

    FakePasteboard m_pasteboard;
    FakeWorkspace m_workspace;
    InMemoryUserDefaults m_defaults;
    FakeMachineInfo m_machineInfo;
    RecordingHUD m_hud;
    ModelContext m_writer{*m_container};
    CommandHandler m_handler{{.container = *m_container,
                              .pasteboard = m_pasteboard,
                              .workspace = m_workspace,
                              .defaults = m_defaults,
                              .machineInfo = m_machineInfo,
                              .hud = m_hud}};
};

TEST_F(CommandHandlerTest, ListsAsJsonWithTheColumnNamesNewestFirst) {
    const auto group =
        std::make_shared<KovaCollection>(QStringLiteral("모음"), 1, std::nullopt, std::nullopt);
    m_writer.insert(group);
    const auto image = std::make_shared<ClipboardItem>(
        QStringLiteral("/tmp/a.png"), ClipboardItemType::image, QStringLiteral("org.app"),
        Timestamp{std::chrono::milliseconds{1'709'251'199'007}}, true, ItemSource::clipboard);
    image->setImageData(QByteArray("png"));
    image->setWidth(3);
    image->setHeight(2);
    image->setFileURLString(QStringLiteral("file:///tmp/a.png"));
    image->setFileSize(5'000'000'000);
    image->setOcrText(QStringLiteral("words"));
    image->setCollections(std::vector{group});
    insert(image);
    insert(makeText(QStringLiteral("older \"quoted\"\n한글"), -1'000'000'000));

    const auto rows = listed("list --json");
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].toObject(), (QJsonObject{{u"id"_qs, u"1"_qs},
                                               {u"content"_qs, u"/tmp/a.png"_qs},
                                               {u"rawType"_qs, u"image"_qs},
                                               {u"width"_qs, 3},
                                               {u"height"_qs, 2},
                                               {u"fileURLString"_qs, u"file:///tmp/a.png"_qs},
                                               {u"fileSize"_qs, qint64{5'000'000'000}},
                                               {u"createdAt"_qs, u"2024-02-29T23:59:59.007Z"_qs},
                                               {u"sourceApp"_qs, u"org.app"_qs},
                                               {u"pinned"_qs, true},
                                               {u"collections"_qs, QJsonArray{u"모음"_qs}},
                                               {u"ocrText"_qs, u"words"_qs},
                                               {u"rawSource"_qs, u"clipboard"_qs}}));
    const auto older = rows[1].toObject();
    EXPECT_EQ(older.value(u"content"), u"older \"quoted\"\n한글"_qs);
    EXPECT_EQ(older.value(u"collections"), QJsonArray{});
    for (const auto* absent : {"width", "height", "fileURLString", "fileSize", "sourceApp", "ocrText"})
        EXPECT_TRUE(older.value(QString::fromLatin1(absent)).isNull()) << absent;
}

TEST_F(CommandHandlerTest, AnEmptyHistoryIsAnEmptyArray) {
    EXPECT_EQ(run("list --json").exitStatus, 0);
    EXPECT_TRUE(QJsonDocument::fromJson(run("list --json").standardOutput).isArray());
    EXPECT_TRUE(listed("list --json").isEmpty());
}

TEST_F(CommandHandlerTest, ListsWithinALimitAndByASearch) {
    insert(makeText(QStringLiteral("Apple pie"), 1));
    insert(makeText(QStringLiteral("banana"), 2));
    insert(makeText(QStringLiteral("APPLE juice"), 3));
    EXPECT_EQ(contents("list --json --limit 1"), QStringList{QStringLiteral("APPLE juice")});
    EXPECT_EQ(contents("list --json --search apple"),
              (QStringList{QStringLiteral("APPLE juice"), QStringLiteral("Apple pie")}));
    EXPECT_EQ(contents("list --json --search apple --limit 1"), QStringList{QStringLiteral("APPLE juice")});
    EXPECT_TRUE(contents("list --json --limit 0").isEmpty());
    EXPECT_TRUE(contents("list --json --search pear").isEmpty());
}

TEST_F(CommandHandlerTest, ListsATableWithOneLineAnItem) {
    const auto item = makeText(QStringLiteral("first\nsecond ") + QString(200, u'x'), 1);
    item->setPinned(true);
    insert(item);
    const auto lines = QString::fromUtf8(run("list").standardOutput).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("ID")));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("1*")));
    EXPECT_TRUE(lines[1].endsWith(QStringLiteral("first second ") + QString(107, u'x')));
    EXPECT_EQ(lines[0].indexOf(QStringLiteral("CONTENT")), lines[1].indexOf(QStringLiteral("first")));
}

TEST_F(CommandHandlerTest, WhatAProgramCallsItselfCannotReachTheTerminalsControls) {
    const auto item = std::make_shared<ClipboardItem>(QStringLiteral("a"), ClipboardItemType::text,
                                                      QStringLiteral("evil\x1b[2J\nname"), moment(1), false,
                                                      ItemSource::clipboard);
    insert(item);
    const auto table = run("list").standardOutput;
    EXPECT_EQ(table.count('\n'), 2);
    EXPECT_FALSE(table.contains('\x1b'));
}

TEST(OneLineTest, CutsThenTurnsLineBreaksIntoBlanksThenTrims) {
    EXPECT_EQ(oneLine(QStringLiteral("\n a\tb\r\nc \n")), u"a b  c");
    EXPECT_EQ(oneLine(QString(119, u' ') + QStringLiteral("ab")), u"a");
    EXPECT_EQ(oneLine(QString(119, u'x') + QStringLiteral("😀")), QString(119, u'x'));
    EXPECT_EQ(oneLine(QStringLiteral("\x1b[31mred")), u"[31mred");
    EXPECT_EQ(oneLine(QString()), u"");
}

TEST_F(CommandHandlerTest, GetsTheTextToTheByteAndThePicture) {
    insert(makeText(QStringLiteral("no line feed 한"), 1));
    EXPECT_EQ(run("get 1").standardOutput, QByteArray("no line feed 한"));
    const auto image = makeText(QStringLiteral("Image"), 2);
    image->setImageData(QByteArray("png\0bytes", 9));
    insert(image);
    EXPECT_EQ(run("get 2 --image out.png").standardOutput, QByteArray("png\0bytes", 9));
    const auto none = run("get 1 --image out.png");
    EXPECT_EQ(none.exitStatus, 1);
    EXPECT_EQ(none.standardError, "kestrova: item 1 has no picture\n");
}

TEST_F(CommandHandlerTest, CopiesWithTheOwnWriteMark) {
    ownWriteChangeCount = 0;
    const auto item = insert(makeText(QStringLiteral("back again"), 1));
    EXPECT_EQ(run("copy 1"), CommandReply{});
    EXPECT_EQ(m_pasteboard.written(), std::vector<PasteboardEntry>{PlainText{QStringLiteral("back again")}});
    EXPECT_EQ(ownWriteChangeCount, m_pasteboard.changeCount());
    ASSERT_EQ(m_hud.shown.size(), 1U);
    EXPECT_EQ(m_hud.shown.front().first, HUDEvent::copied);
    EXPECT_EQ(m_hud.shown.front().second->id(), item->id());
}

TEST_F(CommandHandlerTest, AddsATextFiledAsACopiedOneWouldBeAlsoIfItIsThereAlready) {
    EXPECT_EQ(run({QStringLiteral("add"), QStringLiteral("#fff")}).standardOutput, "1\n");
    EXPECT_EQ(run({QStringLiteral("add"), QStringLiteral("#fff")}).standardOutput, "2\n");
    const auto row = listed("list --json")[0].toObject();
    EXPECT_EQ(row.value(u"rawType"), u"color"_qs);
    EXPECT_TRUE(row.value(u"sourceApp").isNull());
    EXPECT_TRUE(m_pasteboard.written().empty());
}

TEST_F(CommandHandlerTest, AnAddThatCannotBeSavedSaysSoAndIsSavedLater) {
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        const auto reply = run("add kept");
        EXPECT_EQ(reply.exitStatus, 1);
        EXPECT_FALSE(reply.standardError.isEmpty());
    }
    run("add next");
    EXPECT_EQ(savedContents(*m_container), (QStringList{QStringLiteral("next"), QStringLiteral("kept")}));
}

TEST_F(CommandHandlerTest, ADeletionOrPinThatCannotBeSavedSaysSo) {
    insert(makeText(QStringLiteral("a"), 1));
    insert(makeText(QStringLiteral("b"), 2));
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        EXPECT_EQ(run("delete 1").exitStatus, 1);
        EXPECT_EQ(run("pin 2").exitStatus, 1);
    }
    EXPECT_EQ(run("pin 2").exitStatus, 0);
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("b")});
}

TEST_F(CommandHandlerTest, PinsAndUnpins) {
    insert(makeText(QStringLiteral("a"), 1));
    EXPECT_EQ(run("pin 1").standardOutput, "pinned\n");
    EXPECT_TRUE(listed("list --json")[0].toObject().value(u"pinned").toBool());
    EXPECT_EQ(run("pin 1").standardOutput, "unpinned\n");
}

TEST_F(CommandHandlerTest, Deletes) {
    insert(makeText(QStringLiteral("a"), 1));
    EXPECT_EQ(run("delete 1"), CommandReply{});
    EXPECT_EQ(savedContents(*m_container), QStringList{});
    EXPECT_EQ(run("delete 1").exitStatus, 1);
}

TEST_F(CommandHandlerTest, AnUnknownIdentifierIsOneLineAndExitStatusOne) {
    for (const auto* line : {"get 7", "get 7 --image x", "copy 7", "pin 7", "delete 7"}) {
        const auto reply = run(line);
        EXPECT_EQ(reply.exitStatus, 1) << line;
        EXPECT_EQ(reply.standardError, "kestrova: no item with ID 7\n") << line;
        EXPECT_TRUE(reply.standardOutput.isEmpty()) << line;
    }
}

TEST_F(CommandHandlerTest, WrongUseIsOneLineAndExitStatusTwo) {
    const auto reply = run("get");
    EXPECT_EQ(reply.exitStatus, 2);
    EXPECT_EQ(reply.standardError.count('\n'), 1);
}

TEST_F(CommandHandlerTest, TellsItsStatus) {
    insert(makeText(QStringLiteral("a"), 1))->setPinned(true);
    ASSERT_TRUE(m_writer.save());
    insert(makeText(QStringLiteral("b"), 2));
    m_workspace.frontmost = FakePasteboard::application(QStringLiteral("org.app"));
    m_defaults.set(QStringLiteral("monitorEnabled"), false);
    const auto status = QJsonDocument::fromJson(run("status --json").standardOutput).object();
    EXPECT_EQ(status.value(u"version"), u"1.2.3"_qs);
    EXPECT_EQ(status.value(u"items"), 2);
    EXPECT_EQ(status.value(u"pinned"), 1);
    EXPECT_EQ(status.value(u"monitorEnabled"), false);
    EXPECT_EQ(status.value(u"frontmostApplication"), u"org.app"_qs);
    EXPECT_EQ(status.value(u"store"), storeFile());
    EXPECT_EQ(status.value(u"changeCount").toInteger(), m_pasteboard.changeCount());
    EXPECT_TRUE(run("status").standardOutput.contains("Items: 2, of these pinned: 1"));
}

TEST_F(CommandHandlerTest, SeesWhatAnotherProcessHasSaved) {
    const auto other = openedByAnotherProcess();
    ModelContext theirs(*other);
    theirs.insert(makeText(QStringLiteral("theirs"), 1));
    ASSERT_TRUE(theirs.save());
    EXPECT_EQ(contents("list --json"), QStringList{QStringLiteral("theirs")});
}

TEST_F(CommandHandlerTest, QuitTellsTheProgram) {
    bool told = false;
    m_handler.onQuit = [&] { told = true; };
    EXPECT_EQ(run("quit"), CommandReply{});
    EXPECT_TRUE(told);
}

TEST_F(CommandHandlerTest, ToggleShowAndHideReachWhoeverJoinedThem) {
    QStringList told;
    m_handler.onToggle = [&] { told.append(QStringLiteral("toggle")); };
    m_handler.onShow = [&] { told.append(QStringLiteral("show")); };
    m_handler.onHide = [&] { told.append(QStringLiteral("hide")); };
    for (const char* const word : {"hide", "toggle", "show"})
        EXPECT_EQ(run(word).exitStatus, ExitStatus::success);
    EXPECT_EQ(told, (QStringList{QStringLiteral("hide"), QStringLiteral("toggle"), QStringLiteral("show")}));
}

TEST_F(CommandHandlerTest, CaptureReachesWhoeverJoinedIt) {
    QStringList told;
    m_handler.onCaptureArea = [&] { told.append(QStringLiteral("area")); };
    m_handler.onCaptureWindow = [&] { told.append(QStringLiteral("window")); };
    m_handler.onCaptureFullScreen = [&] { told.append(QStringLiteral("screen")); };
    for (const char* const line : {"capture screen", "capture area", "capture window"})
        EXPECT_EQ(run(line), CommandReply{}) << line;
    EXPECT_EQ(told,
              (QStringList{QStringLiteral("screen"), QStringLiteral("area"), QStringLiteral("window")}));
}

TEST_F(CommandHandlerTest, CaptureFailsWhereNothingMayBeCaptured) {
    int begun = 0;
    m_handler.mayCapture = [] { return false; };
    m_handler.onCaptureArea = m_handler.onCaptureWindow = m_handler.onCaptureFullScreen = [&] { ++begun; };
    for (const char* const line : {"capture screen", "capture area", "capture window"}) {
        const auto reply = run(line);
        EXPECT_EQ(reply.exitStatus, ExitStatus::failure) << line;
        EXPECT_EQ(reply.standardError, "kestrova: the screen is locked or cannot be captured\n");
    }
    EXPECT_EQ(begun, 0);
}

TEST_F(CommandHandlerTest, StatusTellsWhetherTheShelfIsOpen) {
    bool isOpen = true;
    m_handler.isShelfVisible = [&] { return isOpen; };
    const auto told = [&] {
        return QJsonDocument::fromJson(run("status --json").standardOutput).object().value(u"shelfVisible");
    };
    EXPECT_EQ(told(), QJsonValue(true));
    isOpen = false;
    EXPECT_EQ(told(), QJsonValue(false));
}

TEST_F(CommandHandlerTest, PasteHandsTheItemOnAndAnUnknownOneFails) {
    const auto item = insert(makeText(QStringLiteral("words")));
    QStringList pasted;
    m_handler.onPaste = [&](const auto& each) { pasted.append(each->content()); };
    EXPECT_EQ(run({QStringLiteral("paste"), QString::number(item->id().value)}).exitStatus,
              ExitStatus::success);
    EXPECT_EQ(pasted, QStringList{QStringLiteral("words")});
    EXPECT_EQ(run("paste 999").exitStatus, ExitStatus::failure);
    EXPECT_EQ(pasted.size(), 1);
}

TEST_F(CommandHandlerTest, StatusTellsTheShortcutsThatAnotherProgramHolds) {
    EXPECT_TRUE(run("status").standardOutput.contains("Shortcuts held by another program: -\n"));
    m_handler.refusedShortcuts = [] { return QStringList{QStringLiteral("togglePanel ⇧⌘V")}; };
    EXPECT_TRUE(run("status").standardOutput.contains("held by another program: togglePanel ⇧⌘V\n"));
    EXPECT_EQ(QJsonDocument::fromJson(run("status --json").standardOutput)
                  .object()
                  .value(u"refusedShortcuts")
                  .toArray(),
              QJsonArray{QStringLiteral("togglePanel ⇧⌘V")});
}

} // namespace
} // namespace kestrova
