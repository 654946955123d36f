#include "Kestrova/capture/ScreenshotSaver.h"

#include "Kestrova/capture/NewFile.h"
#include "Platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace kestrova::ScreenshotSaver {

namespace {

Q_LOGGING_CATEGORY(lcCapture, "kestrova.capture")

constexpr int lastNumber = 999;

/// A file name in two.
struct NameParts {
    QString stem;
    /// Without the dot; empty if there is none.
    QString extension;
};

NameParts nameParts(const QString& path) {
    // Like a folder's, a name may end in separators.
    const auto end = std::find_if(path.crbegin(), path.crend(), [](QChar each) { return each != u'/'; });
    const auto trimmed = path.left(path.crend() - end);
    const auto name = trimmed.mid(trimmed.lastIndexOf(u'/') + 1);
    const auto dot = name.lastIndexOf(u'.');
    const auto extension = name.mid(dot + 1);
    // A dot in front hides a file, one at the end parts it from nothing, and one before a blank ends a
    // sentence.
    if (dot <= 0 || extension.isEmpty() || extension.contains(u' '))
        return {name, {}};
    return {name.left(dot), extension};
}

bool isEnabled(const UserDefaults& defaults) {
    return defaults.boolean(QStringLiteral("screenshotAutoSave")).value_or(true);
}

QString picturesFolder() {
    const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // The desktop's settings are anybody's to edit: they may say nothing, or something relative.
    const QDir parent = QDir::isAbsolutePath(pictures) ? QDir(pictures) : QDir::home();
    return QDir::cleanPath(parent.absoluteFilePath(QStringLiteral("Kestrova")));
}

/// Absolute: what a desktop happened to start the program in is nobody's folder for pictures.
QString folder(const UserDefaults& defaults) {
    const auto chosen = defaults.text(QStringLiteral("screenshotFolder")).value_or(QString());
    if (chosen.isEmpty())
        return picturesFolder();
    if (chosen == QStringLiteral("~") || chosen.startsWith(QStringLiteral("~/")))
        return QDir::cleanPath(QDir::homePath() + chosen.mid(1));
    return QDir::cleanPath(QDir::home().absoluteFilePath(chosen));
}

std::error_code createFolder(const QString& path) {
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(path).toStdString(), error);
    return error;
}

/// The paths that a file may get in a folder.
class Candidates {
public:
    Candidates(const QString& folder, const QString& fileName)
        : m_prefix(folder.endsWith(u'/') ? folder : folder + u'/'),
          m_fileName(fileName),
          m_parts(nameParts(fileName)) {
        if (m_parts.extension.isEmpty())
            m_parts.extension = QStringLiteral("png");
    }

    /// The best is number 1; the one behind `lastNumber` is nobody else's.
    QString path(int number) const {
        if (number == 1)
            return m_prefix + m_fileName;
        const auto mark = number <= lastNumber ? QString::number(number)
                                               : QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        return m_prefix + m_parts.stem + u' ' + mark + u'.' + m_parts.extension;
    }

private:
    QString m_prefix;
    QString m_fileName;
    NameParts m_parts;
};

void logFailure(const char* what, const std::error_code& error, const QString& path) {
    qCWarning(lcCapture).nospace() << "[ScreenshotSaver] " << what << ": " << error.message().c_str() << ": "
                                   << path;
}

} // namespace

std::optional<QUrl> saveIfEnabled(const UserDefaults& defaults, const QByteArray& data,
                                  const QDateTime& date) {
    return saveIfEnabled(defaults, data, datedName(date) + QStringLiteral(".png"));
}

std::optional<QUrl> saveIfEnabled(const UserDefaults& defaults, const QByteArray& data,
                                  const QString& fileName) {
    if (!isEnabled(defaults))
        return std::nullopt;
    const auto into = folder(defaults);
    if (const auto error = createFolder(into)) {
        logFailure("failed to create folder", error, into);
        return std::nullopt;
    }
    const Candidates candidates(into, fileName);
    // Somebody else can take a name after it was looked for: then the next one is.
    std::error_code error = std::make_error_code(std::errc::file_exists);
    QString path;
    for (int number = 1; number <= lastNumber + 1 && error == std::errc::file_exists; ++number) {
        path = candidates.path(number);
        if (!QFileInfo::exists(path))
            error = writeNewFile(path, data);
    }
    if (!error)
        return QUrl::fromLocalFile(path);
    logFailure("write failed", error, path);
    return std::nullopt;
}

QString editedFileName(const std::optional<QString>& originalName, const QDateTime& date) {
    const auto stem = nameParts(originalName.value_or(QString()).trimmed()).stem;
    return (stem.isEmpty() ? datedName(date) : stem) + QStringLiteral(" Edited.png");
}

QString datedName(const QDateTime& date) {
    return QStringLiteral("Screenshot ") +
           QLocale().toString(date.toLocalTime(), QStringLiteral("yyyy-MM-dd 'at' HH.mm.ss"));
}

} // namespace kestrova::ScreenshotSaver
