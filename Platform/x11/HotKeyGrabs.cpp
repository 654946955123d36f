#include "Platform/x11/HotKeyGrabs.h"

#include "Platform/x11/HeldKeys.h"
#include "Platform/x11/ScreenCover.h"
#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/XcbXkb.h"

#include <QLoggingCategory>

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcHotKeys, "kestrova.hotkeys")

constexpr std::uint16_t modifierMask = 0xff;
constexpr std::uint32_t rawKeys =
    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
constexpr std::uint32_t rawButtons =
    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;

/// The number of the extension's events if it can be used; it tells of new keyboards and mappings and, in
/// order with the raw events, of modifiers.
std::uint8_t watchKeyboard(xcb_connection_t* connection) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (!extension || !extension->present)
        return 0;
    const XcbReply<xcb_xkb_use_extension_reply_t> use{xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr)};
    if (!use || !use->supported)
        return 0;
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                     XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    // Else a repeat comes as a release and a press, and the release cannot be told from the key's own.
    constexpr std::uint32_t repeats = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(
        connection,
        xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, repeats, repeats, 0, 0, 0).sequence);
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
    return extension->first_event;
}

} // namespace

HotKeyGrabs::HotKeyGrabs(Listener listener, OwnWindows own)
    : m_listener(std::move(listener)),
      m_own(own),
      m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
    auto* const connection = m_connection.get();
    if (xcb_connection_has_error(connection) != 0)
        return;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    m_raw.emplace(connection);
    m_tap.emplace(connection, m_root);
    m_handover.emplace(connection, m_root);
    m_keyboardEvent = watchKeyboard(connection);
    m_modifiers = readModifierMap(connection);
    const XcbReply<xcb_xkb_get_state_reply_t> state{
        xcb_xkb_get_state_reply(connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr)};
    m_state = state ? state->mods : std::uint8_t{0};
}

bool HotKeyGrabs::isUsable() const {
    return m_raw && m_raw->isAvailable() && m_keyboardEvent != 0 &&
           xcb_connection_has_error(m_connection.get()) == 0;
}

int HotKeyGrabs::add(HotKeyReference reference, std::uint32_t keyCode, std::uint32_t carbonModifiers,
                     HotKeyIdentifier identifier) {
    const auto key = x11KeyOfVirtualKey(keyCode);
    const auto state = stateOfCarbonModifiers(carbonModifiers, keyCode, m_modifiers);
    if (!isUsable() || !key || !state)
        return HotKeys::noSuchKey;
    // The server lets the same client grab a key twice, and one of the two could not be given back alone.
    if (find(*key, *state))
        return HotKeys::alreadyHeld;
    // Before the grab: of the first press, too, the raw event must be there.
    selectRawEvents(neededRawEvents() | rawKeys);
    const int status = grab(*key, *state);
    if (status == 0)
        m_hotKeys.emplace(reference.value, HotKey{.keyCode = keyCode,
                                                  .carbonModifiers = carbonModifiers,
                                                  .identifier = identifier,
                                                  .x11Key = *key,
                                                  .state = state});
    selectRawEvents(neededRawEvents());
    xcb_flush(m_connection.get());
    return status;
}

void HotKeyGrabs::remove(HotKeyReference reference) {
    const auto found = m_hotKeys.find(reference.value);
    if (found == m_hotKeys.end())
        return;
    ungrab(found->second);
    m_hotKeys.erase(found);
    selectRawEvents(neededRawEvents());
    xcb_flush(m_connection.get());
}

bool HotKeyGrabs::startTelling(Onlooker onlooker) {
    if (!isUsable())
        return false;
    selectRawEvents(neededRawEvents() | rawKeys);
    if (onlooker == Onlooker::tap) {
        // What was typed before the tap is not the tap's.
        m_handover->end();
        m_isTapped = m_tap->start();
    } else {
        m_isMonitored = true;
    }
    selectRawEvents(neededRawEvents());
    xcb_flush(m_connection.get());
    return onlooker == Onlooker::tap ? m_isTapped : m_isMonitored;
}

void HotKeyGrabs::stopTelling(Onlooker onlooker) {
    // Who was refused stops as well.
    if (!m_tap)
        return;
    if (onlooker == Onlooker::tap) {
        m_tap->freeze();
        dispatchEvents();
        m_isTapped = false;
        m_tap->stop();
    } else {
        m_isMonitored = false;
    }
    selectRawEvents(neededRawEvents());
    xcb_flush(m_connection.get());
}

void HotKeyGrabs::handOverKeyboard(xcb_window_t window) {
    // The tap keeps what is typed anyway, and a grab of the same client would take its place.
    if (isUsable() && !m_isTapped && !m_tap->isHolding())
        m_handover->begin(window);
}

std::optional<std::chrono::milliseconds> HotKeyGrabs::untilNextDispatch() const {
    return isUsable() ? m_handover->untilNextLook() : std::nullopt;
}

std::uint32_t HotKeyGrabs::neededRawEvents() const {
    if (m_hotKeys.empty() && !m_isTapped && !m_isMonitored)
        return 0;
    return m_tap->isWaiting() ? rawKeys | rawButtons : rawKeys;
}

void HotKeyGrabs::selectRawEvents(std::uint32_t events) {
    if (std::exchange(m_rawEvents, events) == events)
        return;
    m_raw->select(m_root, events);
    if (events == 0)
        m_presses.clear();
}

int HotKeyGrabs::grab(xcb_keycode_t key, std::uint16_t state) const {
    std::vector<xcb_void_cookie_t> cookies;
    for (const auto variant : statesWithLocks(state))
        cookies.push_back(xcb_grab_key_checked(m_connection.get(), 0, m_root, variant, key,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    int status = 0;
    for (const auto cookie : cookies) {
        const XcbReply<xcb_generic_error_t> error{xcb_request_check(m_connection.get(), cookie)};
        if (error)
            status = error->error_code == XCB_ACCESS ? HotKeys::alreadyHeld : HotKeys::noSuchKey;
    }
    if (status != 0)
        ungrab(key, state);
    return status;
}

void HotKeyGrabs::ungrab(xcb_keycode_t key, std::uint16_t state) const {
    for (const auto variant : statesWithLocks(state))
        xcb_ungrab_key(m_connection.get(), key, m_root, variant);
}

void HotKeyGrabs::ungrab(const HotKey& hotKey) const {
    if (hotKey.state)
        ungrab(hotKey.x11Key, *hotKey.state);
}

std::vector<std::uint16_t> HotKeyGrabs::statesWithLocks(std::uint16_t state) const {
    const auto with = [state](int locks) { return static_cast<std::uint16_t>(state | locks); };
    std::vector<std::uint16_t> states{state, with(XCB_MOD_MASK_LOCK)};
    if (m_modifiers.numLock != 0) {
        states.push_back(with(m_modifiers.numLock));
        states.push_back(with(m_modifiers.numLock | XCB_MOD_MASK_LOCK));
    }
    return states;
}

std::uint16_t HotKeyGrabs::withoutLocks(std::uint16_t state) const {
    return static_cast<std::uint16_t>(state & modifierMask & ~(XCB_MOD_MASK_LOCK | m_modifiers.numLock));
}

const HotKeyGrabs::HotKey* HotKeyGrabs::find(xcb_keycode_t key, std::uint16_t state) const {
    const auto found = std::ranges::find_if(m_hotKeys, [&](const auto& entry) {
        return entry.second.x11Key == key && entry.second.state == withoutLocks(state);
    });
    return found == m_hotKeys.end() ? nullptr : &found->second;
}

XcbReply<xcb_generic_event_t> HotKeyGrabs::nextEvent() {
    if (m_arrived.empty())
        return XcbReply<xcb_generic_event_t>{xcb_poll_for_event(m_connection.get())};
    auto event = std::move(m_arrived.front());
    m_arrived.pop_front();
    return event;
}

void HotKeyGrabs::dispatchEvents() {
    do {
        // One change of the keyboard is many events.
        if (std::exchange(m_keyboardChanged, false))
            adoptKeyboard();
        while (const auto event = nextEvent())
            dispatch(*event);
    } while (m_keyboardChanged);
    if (!isUsable())
        return;
    // Last: the grab of a hot key that it has taken the place of is dealt with before it ends.
    m_handover->goOn();
    // The tap may have the keyboard now.
    selectRawEvents(neededRawEvents());
    xcb_flush(m_connection.get());
}

void HotKeyGrabs::dispatch(const xcb_generic_event_t& event) {
    constexpr std::uint8_t sentByClient = 0x80;
    if (event.response_type & sentByClient)
        return;
    if (event.response_type == XCB_KEY_PRESS) {
        onGrabbedPress(reinterpret_cast<const xcb_key_press_event_t&>(event));
        m_tap->goOn();
    } else if (event.response_type == XCB_KEY_RELEASE) {
        onRelease(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
        m_tap->goOn();
    } else if (event.response_type == XCB_FOCUS_IN || event.response_type == XCB_FOCUS_OUT) {
        m_tap->tryAgain();
    } else if (event.response_type == m_keyboardEvent && event.pad0 == XCB_XKB_STATE_NOTIFY) {
        m_state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event).mods;
    } else if (event.response_type == m_keyboardEvent || event.response_type == XCB_MAPPING_NOTIFY) {
        m_keyboardChanged = true;
    } else if (const auto kind = m_raw->kind(event)) {
        const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
        const auto key = static_cast<xcb_keycode_t>(raw.detail);
        if (kind == XCB_INPUT_RAW_KEY_PRESS)
            onRawPress(key, raw.time);
        else if (kind == XCB_INPUT_RAW_KEY_RELEASE)
            onRelease(key);
        else
            m_tap->tryAgain();
    }
}

void HotKeyGrabs::onGrabbedPress(const xcb_key_press_event_t& press) {
    // The keyboard is frozen: nothing typed since has gone anywhere. Without the grab the server hands it to
    // whoever has the focus.
    const auto* const hotKey = find(press.detail, press.state);
    if (m_handover->isUnderWay()) {
        // Its grab has taken the place of this one, and goes when it ends.
    } else if (!m_tap->isHolding()) {
        xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
        xcb_flush(m_connection.get());
    } else if (hotKey || m_isTapped) {
        // The server sends no raw events to the client that holds the keyboard. What is typed behind the tap
        // goes on to the focus, and so may the release.
        m_presses.onRawPress(press.detail, press.time);
    }
    if (hotKey && m_presses.isNew(press.detail, press.time))
        tellPressed(*hotKey);
    if (!hotKey && m_tap->isHolding() && m_tap->onPress(press.detail, isModifier(press.detail)))
        tellKeyDown(Onlooker::tap, press.detail);
}

void HotKeyGrabs::onRawPress(xcb_keycode_t key, xcb_timestamp_t time) {
    m_presses.onRawPress(key, time);
    const auto* const hotKey = find(key, m_state);
    if (!hotKey) {
        if (m_tap->isWaiting() && m_tap->onPress(key, isModifier(key)))
            tellKeyDown(Onlooker::tap, key);
        if (m_isMonitored)
            tellKeyDown(Onlooker::monitor, key);
    }
    if (!hotKey || !m_presses.isNew(key, time))
        return;
    // What the server sent before its answer has been read with it: if there is no grab's event among it,
    // another client has the keyboard and there will be none.
    readArrived();
    const bool isGrabbed = std::ranges::any_of(m_arrived, [&](const auto& event) {
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        return event->response_type == XCB_KEY_PRESS && press.detail == key && press.time == time;
    });
    // A menu and a screen locker both hold the keyboard, and nothing of the program may show or be reached
    // behind a locker.
    if (!isGrabbed && !isScreenCovered(m_connection.get(), m_root, m_own))
        tellPressed(*hotKey);
}

void HotKeyGrabs::onRelease(xcb_keycode_t key) {
    if (const auto identifier = m_presses.onRawRelease(key))
        m_listener.hotKey(HotKeyEvent::Kind::hotKeyReleased, *identifier);
    m_tap->onRelease(key);
}

void HotKeyGrabs::tellPressed(const HotKey& hotKey) {
    m_listener.hotKey(HotKeyEvent::Kind::hotKeyPressed, hotKey.identifier);
    if (!m_presses.noteTold(hotKey.x11Key, hotKey.identifier))
        m_listener.hotKey(HotKeyEvent::Kind::hotKeyReleased, hotKey.identifier);
}

void HotKeyGrabs::tellKeyDown(Onlooker onlooker, xcb_keycode_t key) const {
    if (const auto keyCode = virtualKeyOfX11Key(key))
        m_listener.keyDown(onlooker, *keyCode);
}

void HotKeyGrabs::readArrived() {
    auto* const connection = m_connection.get();
    const XcbReply<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr)};
    while (auto* const event = xcb_poll_for_queued_event(connection))
        m_arrived.emplace_back(event);
}

void HotKeyGrabs::adoptKeyboard() {
    auto* const connection = m_connection.get();
    const auto down = heldKeys(connection, xcb_query_keymap(connection));
    for (const auto identifier : m_presses.endUnless([&](xcb_keycode_t key) { return down.test(key); }))
        m_listener.hotKey(HotKeyEvent::Kind::hotKeyReleased, identifier);

    m_tap->endUnless(down);

    auto modifiers = readModifierMap(connection);
    if (modifiers == m_modifiers)
        return;
    for (const auto& [reference, hotKey] : m_hotKeys)
        ungrab(hotKey);
    m_modifiers = std::move(modifiers);
    for (auto& [reference, hotKey] : m_hotKeys) {
        // One that is out of reach stays registered: the next change may bring it back.
        hotKey.state = stateOfCarbonModifiers(hotKey.carbonModifiers, hotKey.keyCode, m_modifiers);
        if (hotKey.state && grab(hotKey.x11Key, *hotKey.state) != 0)
            hotKey.state.reset();
        if (!hotKey.state)
            qCWarning(lcHotKeys, "[HotKeys] Key %u with modifiers 0x%x is out of reach on the new keyboard",
                      hotKey.keyCode, hotKey.carbonModifiers);
    }
    xcb_flush(connection);
}

} // namespace kestrova
