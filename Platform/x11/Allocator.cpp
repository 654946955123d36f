#include "Platform/x11/Allocator.h"

#include <malloc.h>

namespace kestrova {

void returnLargeBlocksAtOnce() {
    // A block of its own costs a system call and whole pages, which from this size on is nothing beside
    // filling it.
    constexpr int large = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, large);
}

} // namespace kestrova
