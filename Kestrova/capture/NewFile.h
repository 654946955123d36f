#pragma once

#include <QByteArray>
#include <QString>

#include <system_error>

namespace kestrova {

/// Makes the file `path` with `data` in it: all of it at once or nothing, and never in the place of a file
/// that is there, whoever made it and when. Fails with `errc::file_exists` for that, and with what the file
/// system says for the rest; it leaves nothing behind then. Everybody may read it whom the umask lets.
///
/// A program that is killed meanwhile leaves nothing behind either, unless the file system knows no files
/// without a name: there it may be a hidden file, and where there are no second names either, an empty one.
///
/// It does not wait for the disk. Callable from every thread.
std::error_code writeNewFile(const QString& path, const QByteArray& data);

} // namespace kestrova
