#pragma once

#include <cstdlib>
#include <memory>

namespace kestrova {

struct XcbFree {
    void operator()(void* reply) const { std::free(reply); }
};

/// Owns a reply or an event of xcb, which come from malloc.
template<typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

} // namespace kestrova
