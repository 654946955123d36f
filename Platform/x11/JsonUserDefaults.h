#pragma once

#include "Platform/UserDefaults.h"

#include <QFileSystemWatcher>
#include <QJsonObject>
#include <QString>

namespace kestrova {

/// The defaults in one JSON file, an object of keys and values. Each change is written at once, by replacing
/// the file; an edit of the file by hand is taken up as soon as the system tells of it.
///
/// A file that cannot be understood counts as empty and is kept beside the new one as soon as that is
/// written.
class JsonUserDefaults final : public UserDefaults {
public:
    /// `path` need not exist, nor its folder.
    explicit JsonUserDefaults(QString path);

    QJsonValue object(const QString& key) const override;
    void set(const QString& key, const QJsonValue& value) override;

private:
    /// Reads the file again and tells the observers of what has changed.
    void reload();
    void watch();
    bool write();

    QString m_path;
    QJsonObject m_values;
    bool m_fileIsBroken = false;
    QFileSystemWatcher m_watcher;
};

} // namespace kestrova
