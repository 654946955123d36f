#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kestrova {

/// Where a DEFLATE stream (RFC 1951) ends. A stream is continued by another one by clearing the first bit of
/// its last block.
struct DeflateEnd {
    /// The bit at which the last block begins, counted from the stream's first byte, the lowest bit first.
    std::size_t lastBlock = 0;
    /// The bit behind the last block.
    std::size_t end = 0;

    bool operator==(const DeflateEnd&) const = default;
};

/// Walks the codes without unpacking anything. Absent if `stream` is no sound stream, or only a part of one;
/// what follows the stream does not matter. Callable from every thread.
std::optional<DeflateEnd> findDeflateEnd(std::span<const std::uint8_t> stream);

} // namespace kestrova
