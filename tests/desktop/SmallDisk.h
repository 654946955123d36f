#pragma once

#include <QString>

namespace kestrova::test {

/// A small file system of its own at a folder, seen by this process and what it starts from then on. It takes
/// no rights beyond those that an ordinary user has in a namespace of their own; made before the test has
/// threads, as in a process that runs this one test. Throws std::runtime_error if the system refuses it.
class SmallDisk {
public:
    SmallDisk(const QString& folder, int kilobytes);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    /// Writes one file until not a byte more fits.
    void fill();
    /// Takes that file away again.
    void makeRoom();

private:
    QString filler() const { return m_folder + QStringLiteral("/filler"); }

    QString m_folder;
};

} // namespace kestrova::test
