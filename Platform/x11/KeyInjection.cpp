#include "Platform/x11/KeyInjection.h"

#include "Platform/x11/HeldKeys.h"
#include "Platform/x11/KeyModifiers.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <ranges>

namespace kestrova {

KeyInjection::KeyInjection(xcb_connection_t* connection) : m_connection(connection), m_raw(connection) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_test_id);
    if (!extension || !extension->present || !m_raw.isAvailable())
        return;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    m_isAvailable = true;
}

bool KeyInjection::isKeyboardHeld() const {
    const auto cookie = xcb_grab_keyboard(m_connection, 1, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                          XCB_GRAB_MODE_ASYNC);
    const XcbReply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS)
        return true;
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    return false;
}

void KeyInjection::pressChord(const std::vector<xcb_keycode_t>& chord) const {
    const auto held = heldModifiers();
    Counts ownReleases{};
    const auto release = [&](xcb_keycode_t key) {
        fake(XCB_KEY_RELEASE, key);
        ++ownReleases[key];
    };
    // Raw events tell what becomes of the keys meanwhile: a key that the person lets go now was already up to
    // all others.
    m_raw.select(m_root, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
    std::ranges::for_each(held, release);
    // The keys of the chord, too, held or not: one that still counts as pressed would not be pressed again.
    std::ranges::for_each(chord, release);
    for (const auto key : chord)
        fake(XCB_KEY_PRESS, key);
    std::ranges::for_each(chord | std::views::reverse, release);
    finishRequests();

    Counts releases{};
    countReleases(releases);
    std::vector<xcb_keycode_t> pressedAgain;
    std::ranges::copy_if(held, std::back_inserter(pressedAgain),
                         [&](xcb_keycode_t key) { return releases[key] <= ownReleases[key]; });
    for (const auto key : pressedAgain)
        fake(XCB_KEY_PRESS, key);
    finishRequests();

    // And those that were let go at the very last moment.
    countReleases(releases);
    for (const auto key : pressedAgain) {
        if (releases[key] > ownReleases[key])
            fake(XCB_KEY_RELEASE, key);
    }
    m_raw.select(m_root, 0);
    finishRequests();
    countReleases(releases);
}

std::vector<xcb_keycode_t> KeyInjection::heldModifiers() const {
    const auto cookie = xcb_query_keymap(m_connection);
    const auto modifiers = readModifierMap(m_connection);
    const auto down = heldKeys(m_connection, cookie);
    std::vector<xcb_keycode_t> held;
    const auto locks = XCB_MOD_MASK_LOCK | modifiers.numLock;
    for (unsigned key = 0; key < modifiers.maskOfKey.size(); ++key) {
        // A lock that is pressed again would lock or unlock.
        if (down.test(key) && modifiers.maskOfKey[key] != 0 && (modifiers.maskOfKey[key] & locks) == 0)
            held.push_back(static_cast<xcb_keycode_t>(key));
    }
    return held;
}

void KeyInjection::fake(std::uint8_t type, xcb_keycode_t key) const {
    xcb_test_fake_input(m_connection, type, key, XCB_CURRENT_TIME, m_root, 0, 0, 0);
}

void KeyInjection::finishRequests() const {
    const XcbReply<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr)};
}

void KeyInjection::countReleases(Counts& counts) const {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        if (m_raw.kind(*event) != XCB_INPUT_RAW_KEY_RELEASE)
            continue;
        const auto& raw = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(*event);
        if (raw.detail < counts.size())
            ++counts[raw.detail];
    }
}

} // namespace kestrova
