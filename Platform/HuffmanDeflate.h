#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kestrova {

/// What comes behind a part of a DEFLATE stream.
enum class DeflatePart : std::uint8_t { Continued, Last };

/// Bytes as blocks of a DEFLATE stream (RFC 1951) that hold literals alone: where next to nothing repeats,
/// they are smaller than what a search for repeats finds, and made in a fraction of the time. They end with a
/// whole byte. Callable from every thread.
std::vector<std::uint8_t> huffmanDeflated(std::span<const std::uint8_t> bytes, DeflatePart part);

} // namespace kestrova
