#include "Platform/x11/HotKeyPresses.h"

#include <utility>

namespace kestrova {

void HotKeyPresses::onRawPress(xcb_keycode_t key, xcb_timestamp_t time) {
    auto& press = m_presses[key];
    // Servers that get their keys over a network repeat raw presses as well.
    if (press.isDown)
        return;
    press = {.time = time, .isDown = true, .isTold = false, .identifier = {}};
}

std::optional<HotKeyIdentifier> HotKeyPresses::onRawRelease(xcb_keycode_t key) {
    const auto found = m_presses.find(key);
    if (found == m_presses.end())
        return {};
    found->second.isDown = false;
    return std::exchange(found->second.identifier, std::nullopt);
}

bool HotKeyPresses::isNew(xcb_keycode_t key, xcb_timestamp_t time) const {
    const auto found = m_presses.find(key);
    return found != m_presses.end() && found->second.time == time && !found->second.isTold;
}

bool HotKeyPresses::noteTold(xcb_keycode_t key, HotKeyIdentifier identifier) {
    auto& press = m_presses[key];
    press.isTold = true;
    if (press.isDown)
        press.identifier = identifier;
    return press.isDown;
}

std::vector<HotKeyIdentifier> HotKeyPresses::endUnless(const std::function<bool(xcb_keycode_t)>& isDown) {
    std::vector<HotKeyIdentifier> ended;
    for (auto& [key, press] : m_presses) {
        if (!press.isDown || isDown(key))
            continue;
        press.isDown = false;
        if (const auto identifier = std::exchange(press.identifier, std::nullopt))
            ended.push_back(*identifier);
    }
    return ended;
}

} // namespace kestrova
