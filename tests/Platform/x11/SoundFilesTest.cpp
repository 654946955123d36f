#include "Platform/x11/SoundFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class SoundFilesTest : public ::testing::Test {
protected:
    QString makeFile(const QString& name) const {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return path;
    }

    const QTemporaryDir folder;
};

TEST_F(SoundFilesTest, ASoundLiesBesideTheProgram) {
    const QString path = makeFile(u"sounds/Glass.wav"_s);
    EXPECT_EQ(SoundFiles(folder.path()).path(u"Glass"_s), path);
}

TEST_F(SoundFilesTest, OnceInstalledItLiesAmongTheSharedFiles) {
    const QString path = makeFile(u"share/kestrova/sounds/Glass.wav"_s);
    EXPECT_EQ(SoundFiles(folder.filePath(u"bin"_s)).path(u"Glass"_s), path);
}

TEST_F(SoundFilesTest, WhatLiesBesideTheProgramComesFirst) {
    makeFile(u"share/kestrova/sounds/Glass.wav"_s);
    const QString path = makeFile(u"bin/sounds/Glass.wav"_s);
    EXPECT_EQ(SoundFiles(folder.filePath(u"bin"_s)).path(u"Glass"_s), path);
}

TEST_F(SoundFilesTest, WithoutAFolderThereIsNoSound) {
    EXPECT_EQ(SoundFiles(folder.path()).path(u"Glass"_s), std::nullopt);
}

struct BadName {
    const char* description;
    QString name;
};

void PrintTo(const BadName& bad, std::ostream* out) {
    *out << bad.description;
}

class BadSoundNameTest : public SoundFilesTest, public ::testing::WithParamInterface<BadName> {};

TEST_P(BadSoundNameTest, ItIsNoSound) {
    makeFile(u"sounds/Glass.wav"_s);
    // All that the names could reach.
    makeFile(u"secret.wav"_s);
    makeFile(u"sounds/more/Glass.wav"_s);
    QDir(folder.path()).mkpath(u"sounds/Folder.wav"_s);
    const SoundFiles files(folder.path());
    ASSERT_TRUE(files.path(u"Glass"_s));
    EXPECT_EQ(files.path(GetParam().name), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadSoundNameTest,
    ::testing::Values(BadName{"Unknown", u"Gong"_s}, BadName{"Empty", u""_s},
                      BadName{"OtherCase", u"glass"_s}, BadName{"WithExtension", u"Glass.wav"_s},
                      BadName{"FolderAbove", u"../secret"_s}, BadName{"FolderBelow", u"more/Glass"_s},
                      BadName{"BackIntoTheFolder", u"more/../Glass"_s}, BadName{"FullPath", u"/etc/passwd"_s},
                      BadName{"Dots", u".."_s}, BadName{"Folder", u"Folder"_s},
                      BadName{"NullCharacter", u"Glass"_s + QChar::Null}),
    [](const auto& row) { return row.param.description; });

} // namespace
} // namespace kestrova
