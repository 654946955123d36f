#pragma once

namespace kestrova {

/// What the file system refuses while it lives, in this whole process; 0 where it does as it is told. One at
/// a time, and no other thread may use files at its beginning and its end.
struct FileSystemFaults {
    /// The error of opening a file that has no name.
    int unnamedFiles = 0;
    /// The error of renaming that never replaces.
    int renamingWithFlags = 0;
    /// The error of giving a file another name.
    int links = 0;
    /// The error that closing reports for whatever was written.
    int closing = 0;
    /// How many of the next writes a signal interrupts before the first byte.
    int interruptedWrites = 0;
    /// The next write kills the process.
    bool isKilledWriting = false;
};

/// Lets the faults be for as long as it lives.
class FileSystemWithFaults {
public:
    explicit FileSystemWithFaults(const FileSystemFaults& faults);
    FileSystemWithFaults(const FileSystemWithFaults&) = delete;
    FileSystemWithFaults& operator=(const FileSystemWithFaults&) = delete;
    ~FileSystemWithFaults();

    /// To be changed on the way.
    FileSystemFaults& faults();
};

} // namespace kestrova
