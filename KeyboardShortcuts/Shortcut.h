#pragma once

#include "KeyboardShortcuts/Key.h"
#include "Platform/KeyEvent.h"

#include <QHashFunctions>
#include <QString>

#include <cstdint>
#include <optional>

namespace kestrova {

/// A key with its modifiers, as a person sets it and as it is stored. Whether such a key exists shows only
/// when it is registered.
struct Shortcut {
    /// A virtual key code.
    std::int64_t carbonKeyCode = 0;
    /// Bits of CarbonModifier.
    std::int64_t carbonModifiers = 0;

    /// `eventFlags`: bits of ModifierFlags; those that are no modifier drop out.
    static Shortcut of(Key key, std::uint32_t eventFlags);
    static Shortcut of(const KeyEvent& event);

    bool operator==(const Shortcut&) const = default;
};

inline std::size_t qHash(const Shortcut& shortcut, std::size_t seed = 0) {
    return qHashMulti(seed, shortcut.carbonKeyCode, shortcut.carbonModifiers);
}

/// The text in which a shortcut is stored: a JSON object of its two numbers.
QString encoded(const Shortcut& shortcut);
/// What `encoded` wrote; absent for every other text. Further members of the object are passed over.
std::optional<Shortcut> decodedShortcut(const QString& text);

} // namespace kestrova
