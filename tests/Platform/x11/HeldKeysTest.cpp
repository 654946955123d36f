#include "Platform/x11/HeldKeys.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(HeldKeysTest, EachKeyIsABitEightToAByteTheLowestFirst) {
    xcb_query_keymap_reply_t reply{};
    reply.keys[1] = 0b0000'0010;
    reply.keys[4] = 0b1000'0000;
    reply.keys[31] = 0b1000'0000;
    KeySet expected;
    for (const std::size_t key : {9U, 39U, 255U})
        expected.set(key);
    EXPECT_EQ(heldKeys(reply), expected);
}

} // namespace
} // namespace kestrova
