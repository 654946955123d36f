#pragma once

#include <libdeflate.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova {

/// The `size` bytes of a whole DEFLATE stream; absent if it is broken, shorter, or something follows it.
inline std::optional<std::vector<std::uint8_t>> inflated(const std::vector<std::uint8_t>& stream,
                                                         std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    auto* const decompressor = libdeflate_alloc_decompressor();
    std::size_t read = 0;
    const auto result = libdeflate_deflate_decompress_ex(decompressor, stream.data(), stream.size(),
                                                         bytes.data(), bytes.size(), &read, nullptr);
    libdeflate_free_decompressor(decompressor);
    if (result != LIBDEFLATE_SUCCESS || read != stream.size())
        return {};
    return bytes;
}

} // namespace kestrova
