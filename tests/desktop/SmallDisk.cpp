#include "tests/desktop/SmallDisk.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <stdexcept>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

[[noreturn]] void fail(const char* what) {
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

void writeFile(const QString& path, const QByteArray& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(text) != text.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

/// Root needs no user namespace, everybody else has the right to mount only in one of their own.
void enterOwnMounts() {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (user == 0) {
        if (::unshare(CLONE_NEWNS) != 0)
            fail("no mounts of one's own");
    } else {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            fail("no user namespace");
        writeFile(u"/proc/self/setgroups"_s, "deny");
        writeFile(u"/proc/self/uid_map"_s, QByteArray::number(user) + ' ' + QByteArray::number(user) + " 1");
        writeFile(u"/proc/self/gid_map"_s,
                  QByteArray::number(group) + ' ' + QByteArray::number(group) + " 1");
    }
    // Within a changed root there is nothing of that name to make private; the disk then shows outside for as
    // long as it is there.
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 && errno != EINVAL)
        fail("mounts stay shared");
}

} // namespace

SmallDisk::SmallDisk(const QString& folder, int kilobytes) : m_folder(folder) {
    enterOwnMounts();
    const QByteArray size = "size=" + QByteArray::number(kilobytes) + "k";
    if (::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size.constData()) != 0)
        fail("no small file system");
}

SmallDisk::~SmallDisk() {
    ::umount2(QFile::encodeName(m_folder).constData(), MNT_DETACH);
}

void SmallDisk::fill() {
    const int file =
        ::open(QFile::encodeName(filler()).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0)
        fail("no filler");
    const QByteArray block(4096, 'f');
    ssize_t written = 0;
    do {
        written = ::write(file, block.constData(), static_cast<std::size_t>(block.size()));
    } while (written > 0);
    const bool full = errno == ENOSPC;
    ::close(file);
    if (!full)
        fail("the file system does not fill up");
}

void SmallDisk::makeRoom() {
    QFile::remove(filler());
}

} // namespace kestrova::test
