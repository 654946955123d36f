#include "KestrovaCore/SubstringSearch.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace kestrova {
namespace {

constexpr std::size_t laneCount = 16;
// The compiler turns these into whatever the processor has for sixteen bytes at once.
using Bytes = std::uint8_t __attribute__((vector_size(laneCount)));
using Halves = std::uint64_t __attribute__((vector_size(laneCount)));

Bytes load(const char* from) {
    Bytes bytes;
    std::memcpy(&bytes, from, laneCount);
    return bytes;
}

Bytes everywhere(char byte) {
    return Bytes{} + static_cast<std::uint8_t>(byte);
}

bool standsAt(const char* place, const char* needle, std::size_t length) {
    return std::memcmp(place, needle, length) == 0;
}

} // namespace

const char* findBytes(const char* from, const char* end, const char* needle, std::size_t length) {
    static_assert(std::endian::native == std::endian::little, "the order of the places within a half");
    constexpr unsigned bitsPerPlace = 8;
    const Bytes first = everywhere(needle[0]);
    const Bytes last = everywhere(needle[length - 1]);
    // As long as sixteen whole places lie ahead.
    for (; static_cast<std::size_t>(end - from) >= length - 1 + laneCount; from += laneCount) {
        const auto fits = (load(from) == first) & (load(from + length - 1) == last);
        const auto halves = std::bit_cast<Halves>(fits);
        for (std::size_t half = 0; half < 2; ++half)
            for (std::uint64_t places = halves[half]; places != 0;) {
                const auto place = static_cast<unsigned>(std::countr_zero(places)) / bitsPerPlace;
                const char* const candidate = from + half * 8 + place;
                if (standsAt(candidate, needle, length))
                    return candidate;
                places &= ~(std::uint64_t{0xff} << (place * bitsPerPlace));
            }
    }
    for (; static_cast<std::size_t>(end - from) >= length; ++from)
        if (standsAt(from, needle, length))
            return from;
    return nullptr;
}

} // namespace kestrova
