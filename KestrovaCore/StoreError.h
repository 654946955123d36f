#pragma once

#include <QString>

namespace kestrova {

/// Why the store could not be opened, read or written.
struct StoreError {
    enum class Kind {
        /// Not a database, damaged, or with a schema that cannot be adapted: the file is of no use.
        unusable,
        /// Another process held it for longer than we wait.
        busy,
        /// The disk is full.
        full,
        /// No permission, or a read-only file system.
        denied,
        /// The disk or the file system failed.
        failed,
    };
    Kind kind = Kind::failed;
    /// For the log and for a person at a terminal; never holds content of rows.
    QString message;
};

} // namespace kestrova
