#pragma once

#include "Platform/HotKeys.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kestrova {

/// A keyboard that a test presses. Keeps a log of what it was asked.
class FakeHotKeys final : public HotKeys {
public:
    struct Registered {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        HotKeyIdentifier identifier;

        bool operator==(const Registered&) const = default;
    };
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    bool installHandler(Handler newHandler) override {
        log.push_back("install");
        if (!canInstall)
            return false;
        handler = std::move(newHandler);
        return true;
    }
    HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                      HotKeyIdentifier identifier) override {
        log.push_back("register " + std::to_string(identifier.number));
        if (const auto refusal = refused.find({keyCode, carbonModifiers}); refusal != refused.end())
            return refusal->second;
        const HotKeyReference reference{++lastReference};
        live.emplace(reference.value, Registered{keyCode, carbonModifiers, identifier});
        return {0, reference};
    }
    void unregisterHotKey(HotKeyReference reference) override {
        const auto found = live.find(reference.value);
        if (found == live.end()) {
            log.push_back("unregister what is not registered");
            return;
        }
        log.push_back("unregister " + std::to_string(found->second.identifier.number));
        live.erase(found);
    }
    void deliverHotKeys(bool deliver) override {
        log.push_back(deliver ? "hot keys on" : "hot keys off");
        deliversHotKeys = deliver;
    }
    void deliverRawKeys(bool deliver) override {
        log.push_back(deliver ? "raw keys on" : "raw keys off");
        deliversRawKeys = deliver;
    }

    /// Presses and lets go a combination wherever the focus is. False if nobody is told of it.
    bool press(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
        const bool pressed = tell(HotKeyEvent::Kind::hotKeyPressed, keyCode, carbonModifiers);
        return tell(HotKeyEvent::Kind::hotKeyReleased, keyCode, carbonModifiers) && pressed;
    }
    /// Presses and lets go a key in an open menu of the program; what the press was answered.
    int pressRaw(std::uint32_t keyCode, std::uint32_t modifierFlags) {
        if (!deliversRawKeys || !handler)
            return eventNotHandled;
        const int answer = handler({HotKeyEvent::Kind::rawKeyDown, {}, keyCode, modifierFlags});
        handler({HotKeyEvent::Kind::rawKeyUp, {}, keyCode, modifierFlags});
        return answer;
    }
    /// The combinations that are live, in the order in which they came to be.
    std::vector<Combination> combinations() const {
        std::vector<Combination> all;
        for (const auto& [reference, hotKey] : live)
            all.emplace_back(hotKey.keyCode, hotKey.carbonModifiers);
        return all;
    }

    bool canInstall = true;
    /// What these combinations are answered instead of being registered.
    std::map<Combination, HotKeyRegistration> refused;
    std::map<std::uint64_t, Registered> live;
    bool deliversHotKeys = false;
    bool deliversRawKeys = false;
    Handler handler;
    std::vector<std::string> log;

private:
    bool tell(HotKeyEvent::Kind kind, std::uint32_t keyCode, std::uint32_t carbonModifiers) {
        if (!deliversHotKeys || !handler)
            return false;
        for (const auto& [reference, hotKey] : live)
            if (hotKey.keyCode == keyCode && hotKey.carbonModifiers == carbonModifiers) {
                // A copy: what is told may unregister it.
                const auto identifier = hotKey.identifier;
                return handler({kind, identifier, 0, 0}) == 0;
            }
        return false;
    }

    std::uint64_t lastReference = 0;
};

} // namespace kestrova
