#include "KestrovaCore/KovaStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <utility>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcStore, "kestrova.store")

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// A history is nobody else's business. SQLite gives its side files the permissions of the file that it
/// finds.
void makePrivate(const QString& directory, const QString& file) {
    // What goes wrong here the opening that follows reports.
    QDir().mkpath(directory);
    QFile::setPermissions(directory, QFile::permissions(directory) & (ownerOnly | QFileDevice::ExeOwner));
    if (!QFileInfo::exists(file))
        QFile(file).open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly);
    else
        QFile::setPermissions(file, QFile::permissions(file) & ownerOnly);
}

QString withExtension(const QString& file, const QString& extension) {
    const QFileInfo info(file);
    return info.dir().filePath(info.completeBaseName() + u'.' + extension);
}

} // namespace

KovaStore::KovaStore(QString directory, std::function<Timestamp()> now)
    : m_directory(std::move(directory)), m_now(std::move(now)) {}

QString KovaStore::filePath() const {
    return QDir(m_directory).filePath(QStringLiteral("store.sqlite"));
}

Result<ModelContainer*, StoreError> KovaStore::container() {
    std::call_once(m_once, [this] { m_container.emplace(open()); });
    if (!*m_container)
        return m_container->error();
    return m_container->value().get();
}

Result<std::unique_ptr<ModelContainer>, StoreError> KovaStore::open() const {
    makePrivate(m_directory, filePath());
    auto opened = ModelContainer::open(filePath());
    if (opened || opened.error().kind != StoreError::Kind::unusable)
        return opened;
    qCWarning(lcStore).noquote().nospace()
        << "[KovaStore] migration failed (" << opened.error().message << "). Resetting store.";
    moveAside();
    makePrivate(m_directory, filePath());
    return ModelContainer::open(filePath());
}

void KovaStore::moveAside() const {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(m_now()).time_since_epoch().count();
    const QString file = filePath();
    // Failures show at the second opening: it meets the old file again.
    QFile::rename(file, withExtension(file, QStringLiteral("backup-%1.sqlite").arg(seconds)));
    QFile::remove(withExtension(file, QStringLiteral("sqlite-shm")));
    QFile::remove(withExtension(file, QStringLiteral("sqlite-wal")));
}

} // namespace kestrova
