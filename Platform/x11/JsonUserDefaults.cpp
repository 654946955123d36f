#include "Platform/x11/JsonUserDefaults.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>

#include <utility>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcDefaults, "kestrova.defaults")

} // namespace

JsonUserDefaults::JsonUserDefaults(QString path) : m_path(std::move(path)) {
    const auto fileOrFolderChanged = [this] { reload(MissingFile::MeansNoValues); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_watcher, fileOrFolderChanged);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, fileOrFolderChanged);
    // The folder must be there to be watched, and it holds nothing for others.
    const QString folder = QFileInfo(m_path).path();
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder,
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    reload(MissingFile::MeansNoValues);
}

QJsonValue JsonUserDefaults::object(const QString& key) const {
    return m_values.value(key);
}

void JsonUserDefaults::set(const QString& key, const QJsonValue& value) {
    // What was edited by hand a moment ago must not be overwritten with what was read before.
    // An editor that replaces the file may just have removed it.
    reload(MissingFile::ChangesNothing);
    if (m_values.value(key) == value)
        return;
    m_values.insert(key, value);
    m_unwritten.insert(key, value);
    if (write())
        m_unwritten.clear();
    else
        qCWarning(lcDefaults).noquote() << "[UserDefaults] cannot write" << m_path;
    notify(key);
}

void JsonUserDefaults::reload(MissingFile missingFile) {
    watch();
    QFile file(m_path);
    const bool opened = file.open(QIODevice::ReadOnly);
    if (!opened && file.exists()) {
        qCWarning(lcDefaults).noquote() << "[UserDefaults] cannot read" << m_path;
        return;
    }
    if (!opened && missingFile == MissingFile::ChangesNothing)
        return;
    const auto bytes = opened ? file.readAll() : QByteArray{};
    // An editor may be between emptying the file and filling it.
    if (opened && bytes.trimmed().isEmpty() && !m_values.isEmpty())
        return;
    const auto document = QJsonDocument::fromJson(bytes);
    const bool broken = !bytes.trimmed().isEmpty() && !document.isObject();
    if (broken && !m_fileIsBroken)
        qCWarning(lcDefaults).noquote() << "[UserDefaults] no JSON object in" << m_path;
    m_fileIsBroken = broken;
    // An editor may be half-way through writing; what was valid holds until something valid follows.
    if (broken)
        return;
    const auto before = std::exchange(m_values, document.object());
    for (auto it = m_unwritten.begin(); it != m_unwritten.end(); ++it)
        m_values.insert(it.key(), it.value());
    for (auto it = before.begin(); it != before.end(); ++it)
        if (m_values.value(it.key()) != it.value())
            notify(it.key());
    const auto after = m_values;
    for (auto it = after.begin(); it != after.end(); ++it)
        if (!before.contains(it.key()))
            notify(it.key());
}

void JsonUserDefaults::watch() {
    // A file that is replaced takes its watch with it, so the folder is watched too.
    for (const auto& path : {QFileInfo(m_path).path(), m_path})
        if (QFileInfo::exists(path))
            m_watcher.addPath(path);
}

bool JsonUserDefaults::write() {
    if (m_fileIsBroken) {
        QFile::rename(m_path, m_path + QStringLiteral(".broken-%1").arg(QDateTime::currentSecsSinceEpoch()));
        m_fileIsBroken = false;
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(m_values).toJson());
    return file.commit();
}

} // namespace kestrova
