#include "Platform/x11/DesktopIcons.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// A theme with one icon, "thing".
class DesktopIconsTest : public ::testing::Test {
protected:
    void SetUp() override {
        put(u"some/index.theme"_s, "[Icon Theme]\nName=Some\nDirectories=16\n[16]\nSize=16\n");
        picture(u"some/16/thing.png"_s);
        QIcon::setThemeSearchPaths({m_directory.path()});
        QIcon::setThemeName(u"some"_s);
    }

    QString put(const QString& name, const QByteArray& bytes) const {
        const auto path = m_directory.filePath(name);
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    QString picture(const QString& name) const {
        const auto path = put(name, {});
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(Qt::red);
        EXPECT_TRUE(image.save(path, "png"));
        return path;
    }

    const QTemporaryDir m_directory;
};

TEST_F(DesktopIconsTest, ANameIsTheThemesIcon) {
    EXPECT_EQ(iconNamed(u"thing"_s).name(), u"thing"_s);
}

TEST_F(DesktopIconsTest, ANameThatIsAFilesIsTheThemesIconWithoutTheEnding) {
    EXPECT_EQ(iconNamed(u"thing.png"_s).name(), u"thing"_s);
}

TEST_F(DesktopIconsTest, ANameThatTheThemeDoesNotHaveIsNoIcon) {
    EXPECT_TRUE(iconNamed(u"other"_s).isNull());
    EXPECT_TRUE(iconNamed(u"other.png"_s).isNull());
    EXPECT_TRUE(iconNamed({}).isNull());
}

TEST_F(DesktopIconsTest, APathIsThePictureThere) {
    EXPECT_FALSE(iconNamed(picture(u"pictures/a.png"_s)).isNull());
}

TEST_F(DesktopIconsTest, APathToAnythingElseIsNoIcon) {
    const auto pipe = m_directory.filePath(u"pipe.png"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_TRUE(iconNamed(pipe).isNull());
    EXPECT_TRUE(iconNamed(put(u"words.png"_s, "no picture")).isNull());
    EXPECT_TRUE(iconNamed(m_directory.path()).isNull());
    EXPECT_TRUE(iconNamed(m_directory.filePath(u"gone.png"_s)).isNull());
}

TEST_F(DesktopIconsTest, TheFirstIconThatTheThemeHasIsTaken) {
    EXPECT_EQ(firstThemeIcon({u"other"_s, u"thing"_s}).name(), u"thing"_s);
    EXPECT_TRUE(firstThemeIcon({u"other"_s, u"another"_s}).isNull());
    EXPECT_TRUE(firstThemeIcon({}).isNull());
}

} // namespace
} // namespace kestrova
