#include "tests/Kestrova/capture/FileSystemFaults.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// The functions below have the C library's names and cannot be told otherwise.
kestrova::FileSystemFaults currentFaults;

int failed(int error) {
    errno = error;
    return -1;
}

} // namespace

// In the C library's place, for whatever this program calls.
extern "C" {

int open(const char* path, int flags, ...) {
    if ((flags & O_TMPFILE) == O_TMPFILE && currentFaults.unnamedFiles != 0)
        return failed(currentFaults.unnamedFiles);
    va_list arguments;
    va_start(arguments, flags);
    const bool hasMode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    const mode_t mode = hasMode ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) noexcept {
    if (flags != 0 && currentFaults.renamingWithFlags != 0)
        return failed(currentFaults.renamingWithFlags);
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    if (currentFaults.links != 0)
        return failed(currentFaults.links);
    return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
    if (currentFaults.isKilledWriting)
        std::raise(SIGKILL);
    if (currentFaults.interruptedWrites > 0) {
        --currentFaults.interruptedWrites;
        return failed(EINTR);
    }
    return ::syscall(SYS_write, descriptor, bytes, count);
}

int close(int descriptor) {
    const auto closed = static_cast<int>(::syscall(SYS_close, descriptor));
    return closed == 0 && currentFaults.closing != 0 ? failed(currentFaults.closing) : closed;
}
}

namespace kestrova {

FileSystemWithFaults::FileSystemWithFaults(const FileSystemFaults& faults) {
    currentFaults = faults;
}

FileSystemWithFaults::~FileSystemWithFaults() {
    currentFaults = {};
}

FileSystemFaults& FileSystemWithFaults::faults() {
    return currentFaults;
}

} // namespace kestrova
