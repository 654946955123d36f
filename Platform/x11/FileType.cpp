#include "Platform/x11/FileType.h"

#include <QMimeDatabase>
#include <QStringList>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

// The rules for contents look no further.
constexpr qsizetype bytesLookedAt = 4096;

FileFacts::Kind kindOf(mode_t mode) {
    if (S_ISDIR(mode))
        return FileFacts::Kind::directory;
    if (S_ISCHR(mode))
        return FileFacts::Kind::characterDevice;
    if (S_ISBLK(mode))
        return FileFacts::Kind::blockDevice;
    if (S_ISFIFO(mode))
        return FileFacts::Kind::pipe;
    return S_ISSOCK(mode) ? FileFacts::Kind::socket : FileFacts::Kind::regular;
}

std::optional<QByteArray> readFirstBytes(const QByteArray& path) {
    // A pipe that has come in the file's place in between must not keep the thread.
    const int file = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return {};
    QByteArray bytes(bytesLookedAt, Qt::Uninitialized);
    const auto size = ::read(file, bytes.data(), bytesLookedAt);
    ::close(file);
    if (size < 0)
        return {};
    bytes.truncate(size);
    return bytes;
}

QLatin1StringView nameOfKind(FileFacts::Kind kind) {
    switch (kind) {
    case FileFacts::Kind::directory:
        return "inode/directory"_L1;
    case FileFacts::Kind::characterDevice:
        return "inode/chardevice"_L1;
    case FileFacts::Kind::blockDevice:
        return "inode/blockdevice"_L1;
    case FileFacts::Kind::pipe:
        return "inode/fifo"_L1;
    case FileFacts::Kind::socket:
        return "inode/socket"_L1;
    case FileFacts::Kind::absent:
    case FileFacts::Kind::regular:
        break;
    }
    return {};
}

} // namespace

FileFacts lookAtFile(const QByteArray& path, FirstBytes firstBytes) {
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return {};
    FileFacts facts{.kind = kindOf(status.st_mode), .firstBytes = {}};
    if (facts.kind == FileFacts::Kind::regular && firstBytes == FirstBytes::asWell)
        facts.firstBytes = readFirstBytes(path);
    return facts;
}

bool isTypeToldByName(const QString& path) {
    return QMimeDatabase().mimeTypesForFileName(path).size() == 1;
}

QMimeType typeOfFile(const QString& path, const FileFacts& facts) {
    const QMimeDatabase types;
    if (const auto name = nameOfKind(facts.kind); !name.isEmpty())
        return types.mimeTypeForName(name);
    return facts.firstBytes ? types.mimeTypeForFileNameAndData(path, *facts.firstBytes)
                            : types.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
}

QStringList iconNamesOf(const QMimeType& type) {
    QStringList names{type.iconName(), type.genericIconName()};
    if (type.name() == "inode/directory"_L1)
        names.append(u"folder"_s);
    if (type.inherits(u"text/plain"_s))
        names.append(u"text-x-generic"_s);
    return names << u"unknown"_s << u"text-x-generic"_s;
}

} // namespace kestrova
