#include "Platform/x11/ProgramMemory.h"

#include <QFile>

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdint>

namespace kestrova {

namespace {

bool isTraced() {
    // Format: proc(5), "/proc/pid/status".
    QFile status(QStringLiteral("/proc/self/status"));
    return !status.open(QIODevice::ReadOnly) || !status.readAll().contains("\nTracerPid:\t0\n");
}

/// Only what was loaded without the right to write to it: those pages are the file's, and nothing is lost
/// with them. What the loader has written to and protected then is another segment.
int letGoOfSegments(dl_phdr_info* object, std::size_t, void*) {
    const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const auto& segment = object->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0)
            continue;
        const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
        const std::uintptr_t firstPage = begin / pageSize * pageSize;
        // Only advice: where the system refuses it, the pages stay.
        static_cast<void>(
            ::madvise(std::bit_cast<void*>(firstPage), begin + segment.p_memsz - firstPage, MADV_DONTNEED));
    }
    return 0;
}

} // namespace

void letGoOfProgramPages() {
    if (!isTraced())
        ::dl_iterate_phdr(letGoOfSegments, nullptr);
}

} // namespace kestrova
