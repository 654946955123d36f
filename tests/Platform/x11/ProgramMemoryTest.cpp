#include "Platform/x11/ProgramMemory.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace kestrova {
namespace {

constexpr std::size_t size = 250 * 1024;
constexpr int kilobytes = size / 1024;

struct Filled {
    constexpr explicit Filled(char byte) { bytes.fill(byte); }
    bool consistsOf(char byte) const {
        return std::ranges::all_of(bytes, [byte](char each) { return each == byte; });
    }

    std::array<char, size> bytes{};
};

constexpr Filled constants('c');
Filled variables('v');

/// Of the mapping around the constants, as the system tells; -1 if it knows none.
int residentKilobytes() {
    QFile maps(QStringLiteral("/proc/self/smaps"));
    EXPECT_TRUE(maps.open(QIODevice::ReadOnly));
    const auto place = std::bit_cast<std::uintptr_t>(&constants.bytes[size / 2]);
    bool isThis = false;
    for (const auto& line : maps.readAll().split('\n')) {
        const auto range = line.left(line.indexOf(' ')).split('-');
        if (range.size() == 2)
            isThis = range[0].toULongLong(nullptr, 16) <= place && place < range[1].toULongLong(nullptr, 16);
        else if (isThis && line.startsWith("Rss:"))
            return line.simplified().split(' ').value(1).toInt();
    }
    return -1;
}

TEST(ProgramMemoryTest, ConstantsAreLetGoAndReadAgainWhenNeeded) {
    ASSERT_TRUE(constants.consistsOf('c'));
    const int before = residentKilobytes();
    ASSERT_GE(before, kilobytes);
    letGoOfProgramPages();
    // The look itself uses some of the others again.
    EXPECT_LE(residentKilobytes(), before - kilobytes / 2);
    EXPECT_TRUE(constants.consistsOf('c'));
}

TEST(ProgramMemoryTest, WhatHasBeenWrittenStays) {
    variables.bytes.fill('w');
    letGoOfProgramPages();
    EXPECT_TRUE(variables.consistsOf('w'));
}

} // namespace
} // namespace kestrova
