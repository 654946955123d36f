#pragma once

#include <cstddef>

namespace kestrova {

/// The first place in [`from`, `end`) at which the `length` bytes at `needle` stand, or null. `length` is at
/// least 1.
///
/// Compares the first and the last byte of the needle with sixteen places at a time and looks closer only
/// where both fit. The texts of a history are short, and Korean ones share most of their bytes, which is
/// where the usual search loses its time: in setting up, and in places where only the first byte fits.
const char* findBytes(const char* from, const char* end, const char* needle, std::size_t length);

} // namespace kestrova
