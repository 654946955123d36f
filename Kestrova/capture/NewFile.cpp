#include "Kestrova/capture/NewFile.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace kestrova {

namespace {

constexpr mode_t asTheUmaskSays = 0666;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// An open file that is written.
class Descriptor {
public:
    Descriptor(const QByteArray& path, int flags)
        : m_number(::open(path.constData(), O_WRONLY | O_CLOEXEC | flags, asTheUmaskSays)) {
        if (m_number < 0)
            m_error = lastError();
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (isOpen())
            ::close(m_number);
    }

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    /// The first that there was.
    std::error_code error() const { return m_error; }

    void write(const QByteArray& data) {
        for (qsizetype written = 0; written < data.size() && !m_error;) {
            const auto count =
                ::write(m_number, data.constData() + written, static_cast<size_t>(data.size() - written));
            if (count >= 0)
                written += count;
            else if (errno != EINTR)
                m_error = lastError();
        }
        if (!m_error)
            flush();
    }

private:
    /// Some file systems say only when a file is closed that they are full; this one is still needed.
    void flush() {
        const int copy = ::dup(m_number);
        if (copy < 0 || ::close(copy) != 0)
            m_error = lastError();
    }

    int m_number;
    std::error_code m_error;
};

/// The name of a file of ours, which is removed again unless it is kept.
class OwnName {
public:
    explicit OwnName(QByteArray path) : m_path(std::move(path)) {}
    OwnName(const OwnName&) = delete;
    OwnName& operator=(const OwnName&) = delete;
    ~OwnName() {
        if (!m_isKept)
            ::unlink(m_path.constData());
    }

    const char* path() const { return m_path.constData(); }
    void keep() { m_isKept = true; }

private:
    const QByteArray m_path;
    bool m_isKept = false;
};

/// Writes a file that has no name before it is whole: whatever ends the program meanwhile, nothing is left of
/// it. Absent where the file system knows no such files.
std::optional<std::error_code> writeUnnamed(const QByteArray& folder, const QByteArray& path,
                                            const QByteArray& data) {
    Descriptor file(folder, O_TMPFILE);
    if (!file.isOpen())
        return std::nullopt;
    file.write(data);
    if (file.error())
        return file.error();
    const auto self = "/proc/self/fd/" + std::to_string(file.number());
    if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW) == 0)
        return std::error_code();
    // What else can be wrong lies in the way, not in the place.
    return errno == EEXIST ? std::optional(lastError()) : std::nullopt;
}

/// Gives the file another name, if that is still free.
std::error_code publish(OwnName& file, const QByteArray& path) {
    if (::renameat2(AT_FDCWD, file.path(), AT_FDCWD, path.constData(), RENAME_NOREPLACE) == 0) {
        file.keep();
        return {};
    }
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return lastError();
    // Network and user-space file systems know only the renaming that replaces. A second name never does; the
    // first one then goes.
    if (::linkat(AT_FDCWD, file.path(), AT_FDCWD, path.constData(), 0) == 0)
        return {};
    if (errno == EEXIST)
        return lastError();
    // And some of them know no second names: what may be replaced is then a file of our own.
    const Descriptor taken(path, O_CREAT | O_EXCL);
    if (!taken.isOpen())
        return taken.error();
    OwnName place(path);
    if (::rename(file.path(), place.path()) != 0)
        return lastError();
    file.keep();
    place.keep();
    return {};
}

std::error_code writeHidden(const QByteArray& folder, const QByteArray& path, const QByteArray& data) {
    // In the same folder: only there can it be renamed.
    const auto unfinished = folder + "/.kestrova-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    Descriptor file(unfinished, O_CREAT | O_EXCL);
    if (!file.isOpen())
        return file.error();
    OwnName name(unfinished);
    file.write(data);
    return file.error() ? file.error() : publish(name, path);
}

} // namespace

std::error_code writeNewFile(const QString& path, const QByteArray& data) {
    if (path.contains(QChar::Null))
        return std::make_error_code(std::errc::invalid_argument);
    const auto folder = QFile::encodeName(QFileInfo(path).path());
    const auto encoded = QFile::encodeName(path);
    const auto unnamed = writeUnnamed(folder, encoded, data);
    return unnamed ? *unnamed : writeHidden(folder, encoded, data);
}

} // namespace kestrova
