#pragma once

#include <QByteArray>
#include <QMimeType>
#include <QString>

#include <optional>

namespace kestrova {

/// What the disk says of a file.
struct FileFacts {
    enum class Kind { absent, regular, directory, characterDevice, blockDevice, pipe, socket };

    Kind kind = Kind::absent;
    /// Of a regular file; absent if they were not asked for or cannot be read.
    std::optional<QByteArray> firstBytes;
};

enum class FirstBytes { asWell, leftOut };

/// Looks at what is at `path`, links followed. As long as the disk is silent it does not come back; on any
/// thread, and nothing of the toolkit's is touched that has an end.
FileFacts lookAtFile(const QByteArray& path, FirstBytes firstBytes);

/// Whether a file's name alone tells its type. Any thread.
bool isTypeToldByName(const QString& path);

/// The type of what is at `path`; where nothing is there or could be read, what its name says. Any thread.
QMimeType typeOfFile(const QString& path, const FileFacts& facts);

/// The theme's names for such files, from the very type to what fits every file.
QStringList iconNamesOf(const QMimeType& type);

} // namespace kestrova
