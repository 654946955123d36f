#include "Platform/x11/DesktopEntries.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <map>
#include <optional>
#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

DesktopEntry entry(const QString& identifier, const QString& windowClass = {},
                   const QString& executable = {}) {
    return {.identifier = identifier,
            .name = identifier,
            .iconName = {},
            .startupWindowClass = windowClass,
            .executable = executable};
}

QString match(const std::vector<DesktopEntry>& entries, const WindowClass& windowClass,
              const QString& executable = {}) {
    const auto* const found = matchingEntry(entries, windowClass, executable);
    return found ? found->identifier : u"none"_s;
}

TEST(MatchingEntryTest, TheRulesApplyByFallingCertainty) {
    const std::vector<DesktopEntry> entries{entry(u"by-program"_s, {}, u"thing"_s),
                                            entry(u"org.example.Thing"_s), entry(u"thing"_s),
                                            entry(u"by-class"_s, u"Thing"_s)};
    const WindowClass window{.instance = u"thing"_s, .name = u"Thing"_s};
    EXPECT_EQ(match(entries, window, u"thing"_s), u"by-class"_s);
    EXPECT_EQ(match({entries.begin(), entries.end() - 1}, window, u"thing"_s), u"thing"_s);
    EXPECT_EQ(match({entries.begin(), entries.end() - 2}, window, u"thing"_s), u"org.example.Thing"_s);
    EXPECT_EQ(match({entries.begin(), entries.end() - 3}, window, u"thing"_s), u"by-program"_s);
}

TEST(MatchingEntryTest, TheLastComponentOfAnIdentifierIsTheNameOfItsWindows) {
    EXPECT_EQ(match({entry(u"org.xfce.mousepad"_s)}, {.instance = u"mousepad"_s, .name = u"Mousepad"_s}),
              u"org.xfce.mousepad"_s);
}

TEST(MatchingEntryTest, NearlyRightIsNotRight) {
    const std::vector<DesktopEntry> entries{entry(u"org.example.Thing"_s, u"ThingMain"_s, u"thing"_s)};
    EXPECT_EQ(match(entries, {.instance = u"thin"_s, .name = u"Things"_s}), u"none"_s);
    EXPECT_EQ(match(entries, {.instance = u"thingmain"_s, .name = u"THINGMAIN"_s}), u"none"_s);
    EXPECT_EQ(match(entries, {}, u"thing2"_s), u"none"_s);
    EXPECT_EQ(match(entries, {}, {}), u"none"_s);
    EXPECT_EQ(match({entry({})}, {}, {}), u"none"_s);
    EXPECT_EQ(match({}, {.instance = u"a"_s, .name = u"A"_s}, u"a"_s), u"none"_s);
}

TEST(MatchingEntryTest, AProgramThatRunsOtherProgramsTellsNothing) {
    EXPECT_EQ(match({entry(u"some-script"_s, {}, u"python3"_s)}, {}, u"python3"_s), u"none"_s);
}

class DesktopEntriesTest : public testing::Test {
protected:
    void put(const QString& path, const QByteArray& more = {}) const {
        const auto whole = m_directory.filePath(path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(whole).path()));
        QFile file{whole};
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=" + QFileInfo(path).completeBaseName().toUtf8() +
                   "\nExec=/bin/true %U\n" + more);
        file.close();
    }
    // Directory times are coarse: what a test changes at once may not show.
    void age(const QString& path) const {
        QFile directory{m_directory.filePath(path)};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(directory.fileName()).constData(), longAgo, 0), 0);
    }
    static WindowClass named(const QString& name) { return {.instance = name, .name = name}; }
    static constexpr timespec longAgo[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};

    const QTemporaryDir m_directory;
};

TEST_F(DesktopEntriesTest, AnEntryTellsNameIconClassAndProgram) {
    put(u"apps/org.example.Thing.desktop"_s, "Icon=thing-icon\nStartupWMClass=ThingMain\n");
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_EQ(entries.entryFor(named(u"ThingMain"_s), {}), (DesktopEntry{.identifier = u"org.example.Thing"_s,
                                                                         .name = u"org.example.Thing"_s,
                                                                         .iconName = u"thing-icon"_s,
                                                                         .startupWindowClass = u"ThingMain"_s,
                                                                         .executable = u"true"_s}));
}

TEST_F(DesktopEntriesTest, AFoldersNameIsPartOfTheIdentifier) {
    put(u"apps/vendor/thing.desktop"_s);
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_TRUE(entries.entryFor(named(u"vendor-thing"_s), {}));
    EXPECT_FALSE(entries.entryFor(named(u"thing"_s), {}));
}

TEST_F(DesktopEntriesTest, AnEarlierDirectoryHidesALaterOne) {
    put(u"own/thing.desktop"_s, "Icon=own\n");
    put(u"own/gone.desktop"_s, "Hidden=true\n");
    put(u"system/thing.desktop"_s, "Icon=system\n");
    put(u"system/gone.desktop"_s);
    DesktopEntries entries{{m_directory.filePath(u"own"_s), m_directory.filePath(u"system"_s)}};
    const auto thing = entries.entryFor(named(u"thing"_s), {});
    ASSERT_TRUE(thing);
    EXPECT_EQ(thing->iconName, u"own"_s);
    EXPECT_FALSE(entries.entryFor(named(u"gone"_s), {}));
}

TEST_F(DesktopEntriesTest, AnEntryInTheMenusIsPreferredToAHelper) {
    put(u"apps/a-helper.desktop"_s, "NoDisplay=true\nStartupWMClass=Thing\n");
    put(u"apps/b-main.desktop"_s, "StartupWMClass=Thing\n");
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_EQ(entries.entryFor(named(u"Thing"_s), {}).value_or(DesktopEntry{}).identifier, u"b-main"_s);
}

TEST_F(DesktopEntriesTest, BadFilesAreLeftOut) {
    put(u"apps/good.desktop"_s);
    for (const auto& [name, content] : std::initializer_list<std::pair<QString, QByteArray>>{
             {u"empty"_s, ""},
             {u"binary"_s, QByteArray("\0\xff\xfe\0", 4)},
             {u"nogroup"_s, "Name=x\nExec=true\n"},
             {u"link"_s, "[Desktop Entry]\nType=Link\nName=x\nURL=http://example.org\n"},
             {u"missing"_s, "[Desktop Entry]\nType=Application\nName=x\nExec=/nonexistent/program\n"}}) {
        QFile file{m_directory.filePath(u"apps/%1.desktop"_s.arg(name))};
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
    }
    DesktopEntries entries{{m_directory.filePath(u"apps"_s), m_directory.filePath(u"nowhere"_s)}};
    EXPECT_TRUE(entries.entryFor(named(u"good"_s), {}));
    for (const auto& name : {u"empty"_s, u"binary"_s, u"nogroup"_s, u"link"_s, u"missing"_s})
        EXPECT_FALSE(entries.entryFor(named(name), {})) << name.toStdString();
}

TEST_F(DesktopEntriesTest, AnApplicationInstalledLaterIsFound) {
    put(u"apps/first.desktop"_s);
    age(u"apps"_s);
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_FALSE(entries.entryFor(named(u"second"_s), {}));
    put(u"apps/second.desktop"_s);
    EXPECT_TRUE(entries.entryFor(named(u"second"_s), {}));
}

TEST_F(DesktopEntriesTest, AnApplicationThatWasRemovedIsNotFound) {
    put(u"apps/first.desktop"_s);
    put(u"apps/second.desktop"_s);
    age(u"apps"_s);
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_TRUE(entries.entryNamed(u"second"_s));
    ASSERT_TRUE(QFile::remove(m_directory.filePath(u"apps/second.desktop"_s)));
    EXPECT_FALSE(entries.entryNamed(u"second"_s));
    EXPECT_FALSE(entries.entryFor(named(u"second"_s), {}));
}

TEST_F(DesktopEntriesTest, AnEntryWithoutANameHasNone) {
    QFile file{m_directory.filePath(u"nameless.desktop"_s)};
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nExec=/bin/true\nIcon=some-icon\n");
    file.close();
    DesktopEntries entries{{m_directory.path()}};
    const auto found = entries.entryNamed(u"nameless"_s);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, QString());
    EXPECT_EQ(found->iconName, u"some-icon"_s);
}

struct NamedEntry {
    const char* description;
    QString name;
    QString identifier;
};

class EntryNamedTest : public DesktopEntriesTest, public testing::WithParamInterface<NamedEntry> {};

TEST_P(EntryNamedTest, IsFound) {
    put(u"apps/org.example.Notes.desktop"_s, "StartupWMClass=org.example.Pad\n");
    put(u"apps/org.example.Pad.desktop"_s);
    put(u"apps/debian-term.desktop"_s, "StartupWMClass=Terminal-Main\nExec=/bin/cat %U\n");
    put(u"apps/web-viewer.desktop"_s, "StartupWMClass=Navigator\n");
    put(u"apps/settings-helper.desktop"_s, "NoDisplay=true\n");
    put(u"apps/gone.desktop"_s, "Hidden=true\n");
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_EQ(entries.entryNamed(GetParam().name).value_or(DesktopEntry{}).identifier, GetParam().identifier);
}

INSTANTIATE_TEST_SUITE_P(
    , EntryNamedTest,
    testing::Values(NamedEntry{"ByItsIdentifierThoughAnothersWindowsAreCalledSo", u"org.example.Pad"_s,
                               u"org.example.Pad"_s},
                    NamedEntry{"ByTheClassOfItsWindows", u"Navigator"_s, u"web-viewer"_s},
                    NamedEntry{"ByTheEndOfItsIdentifierWhateverTheCase", u"notes"_s, u"org.example.Notes"_s},
                    NamedEntry{"ByTheNameOfItsProgramWithACapital", u"Cat"_s, u"debian-term"_s},
                    NamedEntry{"ThoughMenusLeaveItOut", u"settings-helper"_s, u"settings-helper"_s},
                    NamedEntry{"NotIfItIsHidden", u"gone"_s, QString()},
                    NamedEntry{"NotIfNothingIsCalledSo", u"org.example.Other"_s, QString()},
                    NamedEntry{"NotForAnEmptyName", QString(), QString()}),
    [](const testing::TestParamInfo<NamedEntry>& row) { return row.param.description; });

/// Sets the variables that tell the person's language, for its life.
class Language {
public:
    Language(const char* variable, const char* value) {
        for (auto& [name, before] : m_before) {
            before = qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
            qunsetenv(name);
        }
        qputenv(variable, value);
    }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language() {
        for (const auto& [name, before] : m_before) {
            if (before)
                qputenv(name, *before);
            else
                qunsetenv(name);
        }
    }

private:
    std::map<const char*, std::optional<QByteArray>> m_before{
        {"LANGUAGE", {}}, {"LC_ALL", {}}, {"LC_MESSAGES", {}}, {"LANG", {}}};
};

struct LanguageRow {
    const char* variable;
    const char* value;
    const char* name;
};

class EntryLanguageTest : public DesktopEntriesTest, public testing::WithParamInterface<LanguageRow> {};

TEST_P(EntryLanguageTest, DecidesTheName) {
    put(u"apps/notes.desktop"_s, "Name[ko]=메모장\nName[de]=Notizen\n");
    const Language language(GetParam().variable, GetParam().value);
    DesktopEntries entries{{m_directory.filePath(u"apps"_s)}};
    EXPECT_EQ(entries.entryNamed(u"notes"_s).value_or(DesktopEntry{}).name,
              QString::fromUtf8(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(, EntryLanguageTest,
                         testing::Values(LanguageRow{"LANGUAGE", "de:ko", "Notizen"},
                                         LanguageRow{"LC_ALL", "ko_KR.UTF-8", "메모장"},
                                         LanguageRow{"LC_MESSAGES", "ko_KR.UTF-8", "메모장"},
                                         LanguageRow{"LANG", "ko_KR.UTF-8", "메모장"},
                                         LanguageRow{"LANG", "fr_FR.UTF-8", "notes"}),
                         [](const testing::TestParamInfo<LanguageRow>& row) {
                             return std::string(row.param.variable) + '_' + std::string(row.param.value, 2);
                         });

} // namespace
} // namespace kestrova
