#include "Platform/x11/SharedFiles.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcSharing, "kestrova.sharing")

constexpr auto onlyThePerson = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

bool isPrivateDirectory(const QString& path) {
    return QDir().mkpath(path) && QFile::setPermissions(path, onlyThePerson | QFileDevice::ExeOwner);
}

bool writePrivately(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly, onlyThePerson) &&
           file.write(bytes) == bytes.size() && file.flush();
}

void remove(const QString& folder) {
    if (!QDir(folder).removeRecursively())
        qCWarning(lcSharing).noquote()
            << "[Sharing] A shared file stays behind: not all of" << folder << "can be removed";
}

} // namespace

std::optional<QUrl> SharedFiles::write(const QByteArray& bytes, const QString& suffix) const {
    // A folder for each, so that two within a second can have the name that people will see.
    if (isPrivateDirectory(m_directory)) {
        QTemporaryDir folder(m_directory + QStringLiteral("/XXXXXX"));
        const auto name =
            QStringLiteral("Kestrova %1.%2")
                .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")), suffix);
        const auto path = folder.filePath(name);
        if (folder.isValid() && writePrivately(path, bytes)) {
            folder.setAutoRemove(false);
            return QUrl::fromLocalFile(path);
        }
    }
    qCWarning(lcSharing).noquote() << "[Sharing] No file can be written below" << m_directory;
    return {};
}

bool SharedFiles::removeWrittenBefore(const QDateTime& moment) const {
    bool isAnyLeft = false;
    for (const auto& folder : QDir(m_directory).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (folder.lastModified() < moment)
            remove(folder.filePath());
        isAnyLeft |= QDir(folder.filePath()).exists();
    }
    return isAnyLeft;
}

void SharedFiles::removeAll() const {
    remove(m_directory);
}

} // namespace kestrova
