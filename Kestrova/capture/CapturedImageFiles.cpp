#include "Kestrova/capture/CapturedImageFiles.h"

#include "Kestrova/capture/CapturedImagePayload.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUuid>

#include <unistd.h>

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcCapture, "kestrova.capture")

constexpr auto lifetime = 600s;
// The program is ready for the person first.
constexpr auto tidyingDelay = 10s;

constexpr auto onlyThePerson = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString folderPrefix() {
    return QStringLiteral("KestrovaThumbnailDrag-");
}

bool makeFolder(const QString& path) {
    return QDir().mkdir(path, onlyThePerson | QFileDevice::ExeOwner);
}

/// Nobody meets a part of it: it gets its name when all of it is there.
bool writeAtomically(const QString& path, const QByteArray& bytes) {
    QFile file(QFileInfo(path).path() + QStringLiteral("/.unfinished"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, onlyThePerson))
        return false;
    const bool isWritten = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    return isWritten && file.rename(path);
}

/// Never what lies deeper, nor behind a link: there is nothing of ours.
void removeFolder(const QString& path) {
    QDir folder(path);
    const auto files = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const auto& file : files)
        folder.remove(file);
    if (folder.exists() && !QDir().rmdir(path))
        qCWarning(lcCapture).noquote() << "[CapturedImageFiles] The file of a drag stays behind in" << path;
}

} // namespace

CapturedImageFiles::CapturedImageFiles(MainQueue& mainQueue, QString temporaryDirectory)
    : m_mainQueue(mainQueue), m_temporaryDirectory(std::move(temporaryDirectory)) {
    m_tidying = m_mainQueue.afterUnlessCancelled(tidyingDelay,
                                                 [this] { removeLeftBehind(QDateTime::currentDateTime()); });
}

CapturedImageFiles::~CapturedImageFiles() {
    for (const auto& [folder, removal] : m_folders)
        removeFolder(folder);
}

std::optional<QUrl> CapturedImageFiles::write(const CapturedImagePayload& payload) {
    const auto folder = m_temporaryDirectory + u'/' + folderPrefix() +
                        QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const auto path = folder + u'/' + payload.fileName();
    if (!makeFolder(folder) || !writeAtomically(path, payload.data)) {
        removeFolder(folder);
        qCWarning(lcCapture).noquote() << "[CapturedImageFiles] No file can be written to" << folder;
        return {};
    }
    m_folders.emplace(folder, m_mainQueue.afterUnlessCancelled(lifetime, [this, folder] {
        removeFolder(folder);
        m_folders.erase(folder);
    }));
    return QUrl::fromLocalFile(path);
}

void CapturedImageFiles::removeLeftBehind(const QDateTime& now) const {
    const auto folders =
        QDir(m_temporaryDirectory).entryInfoList({folderPrefix() + u'*'}, QDir::Dirs | QDir::NoSymLinks);
    for (const auto& folder : folders)
        // A folder of somebody else could be changed into a link while it is emptied.
        if (folder.ownerId() == ::getuid() && !m_folders.contains(folder.filePath()) &&
            folder.lastModified() < now.addSecs(-std::chrono::seconds(lifetime).count()))
            removeFolder(folder.filePath());
}

} // namespace kestrova
