#include "tests/desktop/KeyPresser.h"

#include "Platform/x11/XcbXkb.h"

#include <stdexcept>
#include <string>
#include <xcb/xtest.h>

namespace kestrova::test {

KeyPresser::KeyPresser(const QByteArray& display) : m_x(display) {
    const auto* const extension = xcb_get_extension_data(m_x.get(), &xcb_test_id);
    if (extension == nullptr || extension->present == 0)
        throw std::runtime_error("the display takes no keys");
}

KeyPresser::~KeyPresser() {
    for (const xcb_keycode_t key : keysDown())
        fake(XCB_KEY_RELEASE, key);
    settle();
}

void KeyPresser::fake(std::uint8_t type, xcb_keycode_t key) {
    xcb_test_fake_input(m_x.get(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void KeyPresser::settle() const {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
}

void KeyPresser::press(xcb_keycode_t key) {
    fake(XCB_KEY_PRESS, key);
    settle();
}

void KeyPresser::release(xcb_keycode_t key) {
    fake(XCB_KEY_RELEASE, key);
    settle();
}

void KeyPresser::chord(const Chord& keys) {
    for (auto key = keys.begin(); key != keys.end(); ++key)
        fake(XCB_KEY_PRESS, *key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        fake(XCB_KEY_RELEASE, *key);
    settle();
}

void KeyPresser::type(const QByteArray& text) {
    const xcb_setup_t* const setup = xcb_get_setup(m_x.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const XReply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        m_x.get(), xcb_get_keyboard_mapping(m_x.get(), setup->min_keycode, count), nullptr));
    if (!mapping)
        throw std::runtime_error("the display tells no layout");
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const auto keyOf = [&](char character, int level) -> xcb_keycode_t {
        for (int key = 0; key < count; ++key) {
            if (symbols[key * mapping->keysyms_per_keycode + level] == static_cast<unsigned char>(character))
                return static_cast<xcb_keycode_t>(setup->min_keycode + key);
        }
        return 0;
    };
    for (const char character : text) {
        const xcb_keycode_t plain = keyOf(character, 0);
        const xcb_keycode_t shifted = plain != 0 ? xcb_keycode_t{0} : keyOf(character, 1);
        if (plain == 0 && shifted == 0)
            throw std::runtime_error(std::string("no key has ") + character);
        if (shifted != 0)
            fake(XCB_KEY_PRESS, keyAt::shift);
        fake(XCB_KEY_PRESS, plain + shifted);
        fake(XCB_KEY_RELEASE, plain + shifted);
        if (shifted != 0)
            fake(XCB_KEY_RELEASE, keyAt::shift);
    }
    settle();
}

std::uint16_t KeyPresser::maskOf(xcb_keycode_t key) const {
    const XReply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(m_x.get(), xcb_get_modifier_mapping(m_x.get()), nullptr));
    if (!mapping)
        return 0;
    const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(mapping.get());
    unsigned mask = 0;
    for (int index = 0; index < 8 * mapping->keycodes_per_modifier; ++index) {
        if (keys[index] == key)
            mask |= 1U << (index / mapping->keycodes_per_modifier);
    }
    return static_cast<std::uint16_t>(mask);
}

void KeyPresser::lock(xcb_keycode_t lockKey, bool on) {
    const std::uint16_t mask = maskOf(lockKey);
    if (((modifiers() & mask) != 0) != on)
        tap(lockKey);
    if (mask == 0 || ((modifiers() & mask) != 0) != on)
        throw std::runtime_error("the lock does not follow its key");
}

void KeyPresser::lockGroup(std::uint8_t group) {
    const XReply<xcb_xkb_use_extension_reply_t> extension(xcb_xkb_use_extension_reply(
        m_x.get(), xcb_xkb_use_extension(m_x.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    xcb_xkb_latch_lock_state(m_x.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    const XReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(m_x.get(), xcb_xkb_get_state(m_x.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state || state->group != group)
        throw std::runtime_error("the layout has no such group");
}

std::vector<xcb_keycode_t> KeyPresser::keysDown() const {
    std::vector<xcb_keycode_t> down;
    const XReply<xcb_query_keymap_reply_t> keymap(
        xcb_query_keymap_reply(m_x.get(), xcb_query_keymap(m_x.get()), nullptr));
    if (!keymap)
        return down;
    for (unsigned key = 0; key < 256; ++key) {
        if ((keymap->keys[key / 8] & (1U << (key % 8))) != 0)
            down.push_back(static_cast<xcb_keycode_t>(key));
    }
    return down;
}

std::uint16_t KeyPresser::modifiers() const {
    constexpr std::uint16_t kAllModifiers = 0xff;
    const XReply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
    return pointer ? static_cast<std::uint16_t>(pointer->mask & kAllModifiers) : std::uint16_t{0};
}

} // namespace kestrova::test
