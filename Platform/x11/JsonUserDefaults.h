#pragma once

#include "Platform/UserDefaults.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QJsonObject>
#include <QString>

namespace kestrova {

/// The defaults in one JSON file, an object of keys and values. Each change is written at once, by replacing
/// the file; an edit of the file by hand is taken up as soon as the system tells of it.
///
/// A file that cannot be understood leaves the values as they were, at start none, and is kept beside the new
/// one as soon as that is written.
class JsonUserDefaults final : public UserDefaults {
public:
    /// `path` need not exist, nor its folder.
    explicit JsonUserDefaults(QString path);

    QJsonValue object(const QString& key) const override;
    void set(const QString& key, const QJsonValue& value) override;

private:
    enum class MissingFile { MeansNoValues, ChangesNothing };

    /// Reads the file again and tells the observers of what has changed.
    void reload(MissingFile missingFile);
    void watch();
    bool write();

    QString m_path;
    QJsonObject m_values;
    // Changes that are not on disk, `Undefined` for a removed key.
    QHash<QString, QJsonValue> m_unwritten;
    bool m_fileIsBroken = false;
    QFileSystemWatcher m_watcher;
};

} // namespace kestrova
