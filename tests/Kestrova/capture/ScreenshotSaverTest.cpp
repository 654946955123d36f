#include "Kestrova/capture/ScreenshotSaver.h"

#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

/// An environment variable that has another value while it lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const QByteArray& value)
        : m_name(name), m_former(qgetenv(name)), m_wasSet(qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
    ~EnvironmentVariable() {
        if (m_wasSet)
            qputenv(m_name, m_former);
        else
            qunsetenv(m_name);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    const char* const m_name;
    const QByteArray m_former;
    const bool m_wasSet;
};

/// The person's locale while it lives.
class PersonsLocale {
public:
    explicit PersonsLocale(const QLocale& locale) { QLocale::setDefault(locale); }
    ~PersonsLocale() { QLocale::setDefault(m_former); }
    PersonsLocale(const PersonsLocale&) = delete;
    PersonsLocale& operator=(const PersonsLocale&) = delete;

private:
    const QLocale m_former;
};

/// The folder that the process works in while it lives.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const QString& path) { QDir::setCurrent(path); }
    ~WorkingDirectory() { QDir::setCurrent(m_former); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    const QString m_former = QDir::currentPath();
};

const auto keyAutoSave = u"screenshotAutoSave"_s;
const auto keyFolder = u"screenshotFolder"_s;

class ScreenshotSaverTest : public testing::Test {
protected:
    ScreenshotSaverTest() { defaults.set(keyFolder, folder()); }

    QString folder() const { return m_directory.filePath(u"Shots"_s); }
    QString pathOf(const QString& name) const { return folder() + u'/' + name; }
    /// Hidden ones too.
    QStringList files() const {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                        QDir::NoDotAndDotDot);
    }
    void make(const QString& name, const QByteArray& content = "somebody's") const {
        QDir().mkpath(folder());
        QFile file(pathOf(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    /// What the person's desktop says of the folder for pictures.
    void setPicturesFolder(const QByteArray& value) const {
        QDir().mkpath(m_directory.filePath(u"config"_s));
        QFile userDirectories(m_directory.filePath(u"config/user-dirs.dirs"_s));
        ASSERT_TRUE(userDirectories.open(QIODevice::WriteOnly));
        userDirectories.write("XDG_PICTURES_DIR=\"" + value + "\"\n");
    }
    std::optional<QUrl> save(const QString& name) const {
        return ScreenshotSaver::saveIfEnabled(defaults, data, name);
    }

    // First: others are made of it.
    const QTemporaryDir m_directory;
    InMemoryUserDefaults defaults;
    const QByteArray data = "the picture";
    const QDateTime date{QDate(2024, 2, 29), QTime(15, 5, 9), QTimeZone::systemTimeZone()};
    const PersonsLocale locale{QLocale::c()};
    const EnvironmentVariable home{"HOME", QFile::encodeName(m_directory.filePath(u"home"_s))};
    const EnvironmentVariable config{"XDG_CONFIG_HOME", QFile::encodeName(m_directory.filePath(u"config"_s))};
};

// --- Whether, and where ------------------------------------------------------------------------------------

TEST_F(ScreenshotSaverTest, APictureIsWrittenAndItsAbsoluteURLGiven) {
    const auto url = save(u"a.png"_s);
    EXPECT_EQ(url, QUrl::fromLocalFile(pathOf(u"a.png"_s)));
    EXPECT_EQ(contentOf(pathOf(u"a.png"_s)), data);
    EXPECT_THAT(files(), ElementsAre(u"a.png"_s));
}

TEST_F(ScreenshotSaverTest, WithAutoSaveOffNoFolderIsCreated) {
    defaults.set(keyAutoSave, false);
    EXPECT_EQ(save(u"a.png"_s), std::nullopt);
    EXPECT_EQ(ScreenshotSaver::saveIfEnabled(defaults, data, date), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(folder()));
}

TEST_F(ScreenshotSaverTest, AnAutoSaveThatIsNoBooleanCountsAsOn) {
    for (const auto& value : {QJsonValue(0), QJsonValue(u"false"_s), QJsonValue(QJsonValue::Null),
                              QJsonValue(QJsonArray{false})}) {
        defaults.set(keyAutoSave, value);
        EXPECT_TRUE(save(u"a.png"_s));
    }
    defaults.set(keyAutoSave, true);
    EXPECT_TRUE(save(u"a.png"_s));
}

TEST_F(ScreenshotSaverTest, TheFolderIsCreatedWithThoseAboveIt) {
    defaults.set(keyFolder, folder() + u"/a/b c/스크린샷"_s);
    const auto url = save(u"한글 이름.png"_s);
    EXPECT_EQ(url, QUrl::fromLocalFile(pathOf(u"a/b c/스크린샷/한글 이름.png"_s)));
    EXPECT_EQ(contentOf(url->toLocalFile()), data);
}

TEST_F(ScreenshotSaverTest, WithoutAFolderThePersonsPicturesFolderIsTaken) {
    setPicturesFolder("$HOME/Bilder");
    const auto expected = QUrl::fromLocalFile(m_directory.filePath(u"home/Bilder/Kestrova/a.png"_s));
    defaults.set(keyFolder, u""_s);
    EXPECT_EQ(save(u"a.png"_s), expected);
    ASSERT_TRUE(QFile::remove(expected.toLocalFile()));
    defaults.set(keyFolder, QJsonValue::Undefined);
    EXPECT_EQ(save(u"a.png"_s), expected);
    ASSERT_TRUE(QFile::remove(expected.toLocalFile()));
    defaults.set(keyFolder, 7);
    EXPECT_EQ(save(u"a.png"_s), expected);
}

TEST_F(ScreenshotSaverTest, APicturesFolderThatIsNowhereIsTheHomeFolder) {
    QDir().mkpath(m_directory.filePath(u"home"_s));
    // What a relative one would be made in.
    const WorkingDirectory elsewhere(m_directory.path());
    defaults.set(keyFolder, QJsonValue::Undefined);
    const auto expected = QUrl::fromLocalFile(m_directory.filePath(u"home/Kestrova/a.png"_s));
    for (const auto* const nowhere : {"Bilder", "./Bilder", "", "$HOME", "$HOME/"}) {
        setPicturesFolder(nowhere);
        EXPECT_EQ(save(u"a.png"_s), expected) << nowhere;
        EXPECT_TRUE(QFile::remove(expected.toLocalFile())) << nowhere;
    }
}

TEST_F(ScreenshotSaverTest, TheRootIsAFolderToo) {
    defaults.set(keyFolder, u"/"_s);
    // Its own content is nobody's business: the name leads on to where the test may write.
    const auto path = m_directory.filePath(u"a.png"_s);
    EXPECT_EQ(save(path.mid(1)), QUrl::fromLocalFile(path));
    EXPECT_EQ(contentOf(path), data);
    const auto tooLong = QString(300, u'a') + u".png"_s;
    const LogCapture log;
    EXPECT_EQ(save(tooLong), std::nullopt);
    EXPECT_EQ(log.lines(),
              QStringList{u"[ScreenshotSaver] write failed: File name too long: \"/%1\""_s.arg(tooLong)})
        << log.lines().join(u'\n').toStdString();
}

TEST_F(ScreenshotSaverTest, AFolderThatIsNotAbsoluteIsOneInTheHomeFolder) {
    QDir().mkpath(m_directory.filePath(u"home"_s));
    for (const auto& [typed, meant] :
         std::initializer_list<std::pair<QString, QString>>{{u"~/Shots"_s, u"home/Shots/a.png"_s},
                                                            {u"~"_s, u"home/a.png"_s},
                                                            {u"More/Shots/"_s, u"home/More/Shots/a.png"_s},
                                                            {u"~other"_s, u"home/~other/a.png"_s}}) {
        defaults.set(keyFolder, typed);
        EXPECT_EQ(save(u"a.png"_s), QUrl::fromLocalFile(m_directory.filePath(meant)));
    }
}

// --- Names -------------------------------------------------------------------------------------------------

TEST_F(ScreenshotSaverTest, ThePlainNameIsTakenAsItStandsWhileItIsFree) {
    EXPECT_EQ(save(u"no extension"_s), QUrl::fromLocalFile(pathOf(u"no extension"_s)));
    EXPECT_EQ(save(u"a.b.jpg"_s), QUrl::fromLocalFile(pathOf(u"a.b.jpg"_s)));
}

struct TakenRow {
    const char16_t* name;
    const char16_t* second;
};

class TakenName : public ScreenshotSaverTest, public testing::WithParamInterface<TakenRow> {};

TEST_P(TakenName, GetsTheNumberBeforeItsExtension) {
    const auto name = QString::fromUtf16(GetParam().name);
    make(name);
    EXPECT_EQ(save(name), QUrl::fromLocalFile(pathOf(QString::fromUtf16(GetParam().second))));
    EXPECT_EQ(contentOf(pathOf(name)), "somebody's");
}

INSTANTIATE_TEST_SUITE_P(ScreenshotSaverTest, TakenName,
                         testing::Values(TakenRow{u"a.png", u"a 2.png"}, TakenRow{u"a", u"a 2.png"},
                                         TakenRow{u"a.b.jpg", u"a.b 2.jpg"},
                                         TakenRow{u".hidden", u".hidden 2.png"}, TakenRow{u"a.", u"a. 2.png"},
                                         TakenRow{u"Version 1. A draft", u"Version 1. A draft 2.png"},
                                         TakenRow{u"%1 100%.png", u"%1 100% 2.png"},
                                         TakenRow{u"화면 😀.png", u"화면 😀 2.png"}));

TEST_F(ScreenshotSaverTest, ASecondPictureWithinTheSameSecondGetsTheNumberTwo) {
    const auto first = ScreenshotSaver::saveIfEnabled(defaults, data, date);
    const auto second = ScreenshotSaver::saveIfEnabled(defaults, data, date);
    EXPECT_EQ(first, QUrl::fromLocalFile(pathOf(u"Screenshot 2024-02-29 at 15.05.09.png"_s)));
    EXPECT_EQ(second, QUrl::fromLocalFile(pathOf(u"Screenshot 2024-02-29 at 15.05.09 2.png"_s)));
}

TEST_F(ScreenshotSaverTest, TheFirstFreeNumberIsTaken) {
    for (const auto& name : {u"a.png"_s, u"a 2.png"_s, u"a 4.png"_s})
        make(name);
    EXPECT_EQ(save(u"a.png"_s), QUrl::fromLocalFile(pathOf(u"a 3.png"_s)));
    EXPECT_EQ(save(u"a.png"_s), QUrl::fromLocalFile(pathOf(u"a 5.png"_s)));
}

TEST_F(ScreenshotSaverTest, AfterTheLastNumberTheNameGetsAUUID) {
    make(u"a.png"_s);
    for (int number = 2; number <= 998; ++number)
        make(u"a %1.png"_s.arg(number));
    EXPECT_EQ(save(u"a.png"_s), QUrl::fromLocalFile(pathOf(u"a 999.png"_s)));

    const QRegularExpression withUUID(u"^a [0-9A-F]{8}-([0-9A-F]{4}-){3}[0-9A-F]{12}\\.png$"_s);
    const auto first = save(u"a.png"_s);
    const auto second = save(u"a.png"_s);
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(withUUID.match(first->fileName()).hasMatch()) << first->fileName().toStdString();
    EXPECT_NE(first, second);
    EXPECT_EQ(contentOf(second->toLocalFile()), data);
}

TEST_F(ScreenshotSaverTest, FoldersAndLinksThatLeadNowhereTakeANameToo) {
    QDir().mkpath(pathOf(u"a.png"_s));
    ASSERT_TRUE(QFile::link(u"nowhere"_s, pathOf(u"a 2.png"_s)));
    EXPECT_EQ(save(u"a.png"_s), QUrl::fromLocalFile(pathOf(u"a 3.png"_s)));
    EXPECT_FALSE(QFileInfo::exists(pathOf(u"nowhere"_s)));
}

TEST_F(ScreenshotSaverTest, ANameOfTheDateIsInThePersonsLocaleAndTimeZone) {
    const EnvironmentVariable timeZone{"TZ", "Asia/Seoul"};
    const QDateTime elsewhere(QDate(2024, 2, 28), QTime(20, 5, 9), Qt::UTC);
    EXPECT_EQ(ScreenshotSaver::datedName(elsewhere), u"Screenshot 2024-02-29 at 05.05.09"_s);
    QLocale::setDefault(QLocale(QLocale::Korean));
    EXPECT_EQ(ScreenshotSaver::datedName(elsewhere), u"Screenshot 2024-02-29 at 05.05.09"_s);
    QLocale::setDefault(QLocale(QLocale::Persian, QLocale::Iran));
    EXPECT_EQ(ScreenshotSaver::datedName(elsewhere), u"Screenshot ۲۰۲۴-۰۲-۲۹ at ۰۵.۰۵.۰۹"_s);
}

struct EditedRow {
    const char16_t* original;
    const char16_t* edited;
};

class EditedName : public ScreenshotSaverTest, public testing::WithParamInterface<EditedRow> {};

TEST_P(EditedName, IsTheStemMarkedAsEdited) {
    EXPECT_EQ(ScreenshotSaver::editedFileName(QString::fromUtf16(GetParam().original), date),
              QString::fromUtf16(GetParam().edited));
}

INSTANTIATE_TEST_SUITE_P(
    ScreenshotSaverTest, EditedName,
    testing::Values(EditedRow{u"Screenshot 2023-01-02 at 03.04.05.png",
                              u"Screenshot 2023-01-02 at 03.04.05 Edited.png"},
                    EditedRow{u"photo.jpeg", u"photo Edited.png"}, EditedRow{u"photo", u"photo Edited.png"},
                    EditedRow{u"/home/me/a.b.png", u"a.b Edited.png"},
                    EditedRow{u"../up.png", u"up Edited.png"}, EditedRow{u"folder/", u"folder Edited.png"},
                    EditedRow{u" \t\nphoto.png\r\n", u"photo Edited.png"},
                    EditedRow{u".png", u".png Edited.png"},
                    EditedRow{u"", u"Screenshot 2024-02-29 at 15.05.09 Edited.png"},
                    EditedRow{u" \t\r\n", u"Screenshot 2024-02-29 at 15.05.09 Edited.png"},
                    EditedRow{u"/", u"Screenshot 2024-02-29 at 15.05.09 Edited.png"}));

TEST_F(ScreenshotSaverTest, WithoutAnOriginalTheEditedNameIsOfTheDate) {
    EXPECT_EQ(ScreenshotSaver::editedFileName(std::nullopt, date),
              u"Screenshot 2024-02-29 at 15.05.09 Edited.png"_s);
}

// --- Failures ----------------------------------------------------------------------------------------------

TEST_F(ScreenshotSaverTest, AFolderThatCannotBeCreatedIsOneLineInTheLogAndNoFile) {
    make(u"file"_s);
    for (const auto& impossible : {u"file"_s, u"file/below"_s, u"file/far/below"_s}) {
        defaults.set(keyFolder, pathOf(impossible));
        const LogCapture log;
        EXPECT_EQ(save(u"a.png"_s), std::nullopt);
        EXPECT_EQ(log.lines(),
                  QStringList{u"[ScreenshotSaver] failed to create folder: Not a directory: \"%1\""_s.arg(
                      pathOf(impossible))})
            << log.lines().join(u'\n').toStdString();
    }
    EXPECT_THAT(files(), ElementsAre(u"file"_s));
    EXPECT_EQ(contentOf(pathOf(u"file"_s)), "somebody's");
}

TEST_F(ScreenshotSaverTest, AFileThatCannotBeWrittenIsOneLineInTheLogAndNoFile) {
    const auto name = QString(300, u'a') + u".png"_s;
    const LogCapture log;
    EXPECT_EQ(save(name), std::nullopt);
    EXPECT_EQ(log.lines(),
              QStringList{u"[ScreenshotSaver] write failed: File name too long: \"%1\""_s.arg(pathOf(name))})
        << log.lines().join(u'\n').toStdString();
    EXPECT_THAT(files(), IsEmpty());
}

} // namespace
} // namespace kestrova
