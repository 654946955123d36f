#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// The files of the system's sounds.
class SoundFiles {
public:
    /// `programDirectory`: where the running program's file is. The sounds lie beside it in `sounds`, or,
    /// once installed, in `../share/kestrova/sounds`.
    explicit SoundFiles(const QString& programDirectory);

    /// The full path. Absent if there is no such sound; no name leads out of the folder.
    std::optional<QString> path(const QString& name) const;

private:
    QString m_directory;
};

} // namespace kestrova
