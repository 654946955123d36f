#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace kestrova {

/// Files through which content is handed to applications that take nothing but files. Nobody but the person
/// can read them. Main thread only.
class SharedFiles {
public:
    /// Makes the directory when the first file is written.
    explicit SharedFiles(QString directory) : m_directory(std::move(directory)) {}

    /// A new file with the moment as its name; `suffix` has no dot. Absent, with a line in the log, if it
    /// cannot be written.
    std::optional<QUrl> write(const QByteArray& bytes, const QString& suffix) const;

    /// Those that were written before the moment; what cannot be removed costs a line of the log. True if
    /// there are others left.
    bool removeWrittenBefore(const QDateTime& moment) const;
    /// Likewise.
    void removeAll() const;

private:
    QString m_directory;
};

} // namespace kestrova
