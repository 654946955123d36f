#include "Platform/x11/FontMemory.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace kestrova {

namespace {

bool isFontFile(const QByteArray& path) {
    constexpr std::array<QByteArrayView, 4> suffixes{".ttf", ".ttc", ".otf", ".otc"};
    return std::ranges::any_of(suffixes, [&](QByteArrayView suffix) { return path.endsWith(suffix); });
}

} // namespace

void letGoOfFontPages() {
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return;
    // Format: proc(5), "/proc/pid/maps": address range, rights, offset, device, inode, path.
    for (const auto& line : maps.readAll().split('\n')) {
        // Only what nobody can have written to: those pages are the file's, and nothing is lost with them.
        if (!isFontFile(line) || !line.contains(" r--p "))
            continue;
        const auto range = line.left(line.indexOf(' ')).split('-');
        const std::uintptr_t begin = range.value(0).toULongLong(nullptr, 16);
        const std::uintptr_t end = range.value(1).toULongLong(nullptr, 16);
        if (begin < end)
            ::madvise(std::bit_cast<void*>(begin), end - begin, MADV_DONTNEED);
    }
}

} // namespace kestrova
