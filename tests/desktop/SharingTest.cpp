#include "tests/desktop/FakeApplication.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/Waiting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

const QString textType = u"text/plain"_s;
const QString webType = u"x-scheme-handler/https"_s;
const QString pictureType = u"image/png"_s;
const QString mailType = u"x-scheme-handler/mailto"_s;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Contents handed over by the host's adapter alone, on a desktop with no applications but those of the test.
class SharingTest : public ::testing::Test {
protected:
    SharingTest() {
        QDir().mkpath(session.path(u"none"_s));
        // What tells the types of files.
        QFile::link(u"/usr/share/mime"_s, session.path(u"none/mime"_s));
        session.environment().insert(u"XDG_DATA_DIRS"_s, session.path(u"none"_s));
        session.environment().insert(u"PATH"_s, session.path(u"bin"_s) + u":/usr/bin:/bin"_s);
    }
    /// After the applications that it is to know.
    ProbedHost& host() {
        if (!m_host)
            m_host.emplace(session);
        return *m_host;
    }
    QString targets(const QString& content) { return host().ask(u"targets "_s + content); }
    void hand(const QString& target, const QString& content) {
        ASSERT_EQ(host().ask(u"hand %1 %2"_s.arg(target, content)), u"handed");
    }
    bool isLogged(const QByteArray& line) {
        return eventually([&] { return host().process().standardError().contains(line); });
    }

    DesktopSession session;

private:
    std::optional<ProbedHost> m_host;
};

TEST_F(SharingTest, TheChosenApplicationComesFirstThenTheOthersThenMail) {
    const FakeApplication other(session, u"other"_s, {textType});
    const FakeApplication mailer(session, u"mailer"_s, {mailType});
    const FakeApplication chosen(session, u"chosen"_s, {textType});
    session.writeFile(u"config/mimeapps.list"_s,
                      "[Default Applications]\ntext/plain=chosen.desktop\n"
                      "x-scheme-handler/mailto=mailer.desktop\n"
                      "[Added Associations]\ntext/plain=other.desktop;chosen.desktop;\n");
    EXPECT_EQ(targets(u"text words"_s), u"chosen other mail(mailer)");
}

TEST_F(SharingTest, EachKindIsForTheApplicationsThatAreRegisteredForIt) {
    const FakeApplication notes(session, u"notes"_s, {textType});
    const FakeApplication browser(session, u"browser"_s, {webType});
    const FakeApplication viewer(session, u"viewer"_s, {pictureType});
    const auto file = session.writeFile(u"home/a.png"_s, "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(targets(u"text words"_s), u"notes");
    EXPECT_EQ(targets(u"link https://example.org"_s), u"browser");
    EXPECT_EQ(targets(u"picture bytes"_s), u"viewer");
    EXPECT_EQ(targets(u"file "_s + file), u"viewer");
}

TEST_F(SharingTest, WhatIsHiddenOrTakesNoFilesAndTheProgramItselfAreLeftOut) {
    const FakeApplication own(session, u"org.example.HostProbe"_s, {});
    session.writeFile(u"data/applications/hidden.desktop"_s,
                      "[Desktop Entry]\nType=Application\nName=h\nExec=true %f\nMimeType=text/plain;\n"
                      "NoDisplay=true\n");
    session.writeFile(u"data/applications/deaf.desktop"_s,
                      "[Desktop Entry]\nType=Application\nName=d\nExec=true\nMimeType=text/plain;\n");
    const FakeApplication notes(session, u"notes"_s, {});
    session.writeFile(
        u"config/mimeapps.list"_s,
        "[Added Associations]\n"
        "text/plain=org.example.HostProbe.desktop;hidden.desktop;deaf.desktop;notes.desktop;\n");
    EXPECT_EQ(targets(u"text words"_s), u"notes");
}

TEST_F(SharingTest, MailIsOfferedOnlyWhereAProgramForItCanBeGivenAFile) {
    const FakeApplication mailer(session, u"mailer"_s, {mailType});
    EXPECT_EQ(targets(u"text words"_s), u"mail(mailer)");
    session.environment().insert(u"PATH"_s, session.path(u"bin"_s));
    ProbedHost without(session);
    EXPECT_EQ(without.ask(u"targets text words"_s), QString());
}

TEST_F(SharingTest, WithoutAMailProgramThereIsNoMail) {
    EXPECT_EQ(targets(u"text words"_s), QString());
}

TEST_F(SharingTest, ALinkIsOpenedAsItIsAndTheRestAsAFile) {
    const FakeApplication browser(session, u"browser"_s, {webType});
    const FakeApplication notes(session, u"notes"_s, {textType});
    const FakeApplication viewer(session, u"viewer"_s, {pictureType});
    const FakeApplication reader(session, u"reader"_s, {u"application/pdf"_s});
    hand(u"browser"_s, u"link https://example.org/?a=b"_s);
    hand(u"notes"_s, u"text some words"_s);
    hand(u"viewer"_s, u"picture some bytes"_s);
    const auto file = session.writeFile(u"home/a b.pdf"_s, "");
    hand(u"reader"_s, u"file "_s + file);
    const auto argument = [](const FakeApplication& application) {
        const auto start = application.waitForStart();
        return start ? start->arguments.join(u'|') : u"(not started)"_s;
    };
    EXPECT_EQ(argument(browser), u"https://example.org/?a=b");
    EXPECT_EQ(argument(reader), file);
    const auto text = argument(notes);
    EXPECT_TRUE(text.endsWith(u".txt"_s));
    EXPECT_EQ(bytesOf(text), "some words");
    const auto picture = argument(viewer);
    EXPECT_TRUE(picture.endsWith(u".png"_s));
    EXPECT_EQ(bytesOf(picture), "some bytes");
}

TEST_F(SharingTest, AnApplicationThatHasGoneMeanwhileCostsALineOfTheLog) {
    hand(u"gone"_s, u"text some words"_s);
    EXPECT_TRUE(isLogged("[Sharing] The chosen application is no longer there"));
}

TEST_F(SharingTest, APictureThatHasGoneMeanwhileIsNotHandedOver) {
    const FakeApplication viewer(session, u"viewer"_s, {pictureType});
    hand(u"viewer"_s, u"gone"_s);
    EXPECT_TRUE(isLogged("[Sharing] The picture is no longer there"));
    EXPECT_FALSE(viewer.wasStarted());
}

struct Mailed {
    QString content;
    QByteArray bytes;
};

class MailTest : public SharingTest, public ::testing::WithParamInterface<Mailed> {};

TEST_P(MailTest, TakesItAsAFileAndNobodySeesItAmongTheArgumentsOrOnTheBus) {
    // In the place of the desktop's own one.
    const FakeApplication attaching(session, u"xdg-email"_s, {});
    const FakeApplication mailer(session, u"mailer"_s, {mailType});
    const auto& monitor = session.start({.program = u"dbus-monitor"_s, .arguments = {u"--session"_s}});
    ASSERT_TRUE(eventually([&] { return monitor.standardOutput().contains("NameAcquired"); }));
    hand(u"mail"_s, GetParam().content);
    const auto start = attaching.waitForStart();
    ASSERT_TRUE(start);
    ASSERT_EQ(start->arguments.size(), 2) << start->arguments.join(u'|').toStdString();
    EXPECT_EQ(start->arguments[0], u"--attach");
    const QFileInfo file(start->arguments[1]);
    EXPECT_EQ(bytesOf(file.filePath()), GetParam().bytes);
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_FALSE(start->arguments.join(u' ').contains(u"secret"_s));
    // By this the library tells everybody what it has started.
    EXPECT_TRUE(eventually([&] { return monitor.standardOutput().contains("member=Launched"); }));
    EXPECT_FALSE(monitor.standardOutput().contains("secret"));
}

INSTANTIATE_TEST_SUITE_P(Contents, MailTest,
                         ::testing::Values(Mailed{u"text secret words"_s, "secret words"},
                                           Mailed{u"link https://example.org/?token=secret"_s,
                                                  "https://example.org/?token=secret"},
                                           Mailed{u"picture secret bytes"_s, "secret bytes"}));

TEST_F(SharingTest, TheDesktopsOwnWayHandsTheFileToTheMailProgram) {
    const FakeApplication mailer(session, u"mailer"_s, {mailType});
    hand(u"mail"_s, u"text secret words"_s);
    const auto start = mailer.waitForStart();
    ASSERT_TRUE(start);
    const auto url = start->arguments.join(u' ');
    EXPECT_TRUE(url.startsWith(u"mailto:"_s) && url.contains(u"attach="_s)) << url.toStdString();
    EXPECT_FALSE(url.contains(u"secret"_s)) << url.toStdString();
}

class BusApplicationTest : public SharingTest {
protected:
    void install() const {
        session.writeFile(
            u"data/applications/org.example.My-Notes.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Notes\nExec=/bin/false %u\nDBusActivatable=true\n"
            "MimeType=text/plain;\n");
    }
};

TEST_F(BusApplicationTest, IsAskedOverTheBusWithATokenOfItsOwn) {
    install();
    ProbedHost desktop(session);
    ASSERT_EQ(desktop.ask(u"application org.example.My-Notes"_s), u"is");
    const auto file = session.writeFile(u"home/a b.txt"_s, "words");
    hand(u"org.example.My-Notes"_s, u"file "_s + file);
    QString opened;
    EXPECT_TRUE(eventually([&] { return !(opened = desktop.ask(u"opened"_s)).isEmpty(); }))
        << host().process().standardError().toStdString();
    EXPECT_TRUE(opened.startsWith(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded) + u" kestrova-"_s))
        << opened.toStdString();
    EXPECT_TRUE(opened.contains(u"_TIME"_s));
}

TEST_F(BusApplicationTest, ThatDoesNotStartCostsALineOfTheLogWithoutTheFile) {
    install();
    const auto file = session.writeFile(u"home/secret.txt"_s, "words");
    hand(u"org.example.My-Notes"_s, u"file "_s + file);
    EXPECT_TRUE(isLogged("[Applications] org.example.My-Notes cannot be started:"));
    EXPECT_FALSE(host().process().standardError().contains("CRITICAL"));
    EXPECT_FALSE(host().process().standardError().contains("secret"));
}

} // namespace
} // namespace kestrova::test
