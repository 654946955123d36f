#include "tests/desktop/TestKeyboard.h"

#include <ranges>
#include <xcb/xtest.h>

namespace kestrova::test {

TestKeyboard::TestKeyboard(const QByteArray& display) : m_x(display) {}

void TestKeyboard::press(std::uint8_t key) {
    fake(XCB_KEY_PRESS, key);
}

void TestKeyboard::release(std::uint8_t key) {
    fake(XCB_KEY_RELEASE, key);
}

void TestKeyboard::tap(std::uint8_t key) {
    press(key);
    release(key);
}

void TestKeyboard::chord(const std::vector<std::uint8_t>& keys) {
    for (const auto key : keys)
        press(key);
    for (const auto key : keys | std::views::reverse)
        release(key);
}

void TestKeyboard::click(std::uint8_t button, std::int16_t x, std::int16_t y) {
    xcb_warp_pointer(m_x.get(), XCB_NONE, m_x.root(), 0, 0, 0, 0, x, y);
    fake(XCB_BUTTON_PRESS, button);
    fake(XCB_BUTTON_RELEASE, button);
    finish();
}

bool TestKeyboard::isDown(std::uint8_t key) {
    const XReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_x.get(), xcb_query_keymap(m_x.get()), nullptr));
    return reply && (reply->keys[key / 8] & (1 << (key % 8))) != 0;
}

std::uint16_t TestKeyboard::modifiers() {
    const XReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
    return reply ? static_cast<std::uint16_t>(reply->mask & 0xff) : std::uint16_t{0};
}

void TestKeyboard::finish() {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
}

void TestKeyboard::fake(std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(m_x.get(), type, detail, XCB_CURRENT_TIME, m_x.root(), 0, 0, 0);
    xcb_flush(m_x.get());
}

} // namespace kestrova::test
