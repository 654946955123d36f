#include "tests/desktop/TestKeyboard.h"

#include "tests/desktop/Waiting.h"

#include <ranges>
#include <stdexcept>
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
    move({x, y});
    fake(XCB_BUTTON_PRESS, button);
    awaitMouse([button](const MouseState& now) { return (now.buttons >> button & 1) != 0; });
    fake(XCB_BUTTON_RELEASE, button);
    awaitMouse([button](const MouseState& now) { return (now.buttons >> button & 1) == 0; });
}

void TestKeyboard::clickAndMoveOn(std::uint8_t button, QPoint place, QPoint next) {
    move(place);
    fake(XCB_BUTTON_PRESS, button);
    fake(XCB_BUTTON_RELEASE, button);
    move(next);
    awaitMouse([next](const MouseState& now) { return now.place == next; });
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

void TestKeyboard::move(QPoint place) {
    // Not by a warp, which would overtake the buttons.
    xcb_test_fake_input(m_x.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_x.root(),
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
    xcb_flush(m_x.get());
}

void TestKeyboard::awaitMouse(const std::function<bool(const MouseState&)>& isDone) {
    const bool done = eventually([&] {
        const XReply<xcb_query_pointer_reply_t> reply(
            xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
        return reply &&
               isDone({.place = {reply->root_x, reply->root_y}, .buttons = std::uint32_t{reply->mask} >> 7U});
    });
    if (!done)
        throw std::runtime_error("the mouse is held up");
}

void TestKeyboard::fake(std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(m_x.get(), type, detail, XCB_CURRENT_TIME, m_x.root(), 0, 0, 0);
    xcb_flush(m_x.get());
}

} // namespace kestrova::test
