#include "KestrovaCore/SubstringSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace kestrova {
namespace {

TEST(SubstringSearchTest, FindsTheFirstPlaceOrNoneAsASimpleSearchDoes) {
    std::mt19937 random(20'240'229);
    // Few letters, so that near misses and overlaps abound; every length around the sixteen that are compared
    // at once.
    for (int round = 0; round < 200'000; ++round) {
        std::string text(random() % 70, ' ');
        for (auto& letter : text)
            letter = static_cast<char>('a' + random() % 2);
        std::string needle(1 + random() % 6, ' ');
        for (auto& letter : needle)
            letter = static_cast<char>('a' + random() % 2);
        const auto expected = std::string_view(text).find(needle);
        const char* const found =
            findBytes(text.data(), text.data() + text.size(), needle.data(), needle.size());
        ASSERT_EQ(found ? static_cast<std::size_t>(found - text.data()) : std::string_view::npos, expected)
            << '"' << needle << "\" in \"" << text << '"';
    }
}

TEST(SubstringSearchTest, NeverLooksBehindTheEnd) {
    // On the heap and to the byte, so that the address sanitizer sees a step too far.
    for (std::size_t size = 0; size < 40; ++size) {
        const std::string text(size, 'a');
        const auto exact = std::make_unique<char[]>(size);
        std::copy(text.begin(), text.end(), exact.get());
        EXPECT_EQ(findBytes(exact.get(), exact.get() + size, "ab", 2), nullptr);
        EXPECT_EQ(findBytes(exact.get(), exact.get() + size, "a", 1), size == 0 ? nullptr : exact.get());
        EXPECT_EQ(findBytes(exact.get(), exact.get() + size, std::string(size + 1, 'a').c_str(), size + 1),
                  nullptr);
    }
}

TEST(SubstringSearchTest, HandlesBytesAbove127) {
    const std::string text = "그리고 은하수";
    const std::string needle = "은하수";
    EXPECT_EQ(findBytes(text.data(), text.data() + text.size(), needle.data(), needle.size()),
              text.data() + text.size() - needle.size());
}

} // namespace
} // namespace kestrova
