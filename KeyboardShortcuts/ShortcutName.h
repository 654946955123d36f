#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QString>

#include <optional>

namespace kestrova {

/// The identity of one shortcut that a person can set.
struct ShortcutName {
    QString rawValue;
    /// What the shortcut is until the person sets or clears it.
    std::optional<Shortcut> defaultShortcut;

    bool operator==(const ShortcutName&) const = default;
};

inline std::size_t qHash(const ShortcutName& name, std::size_t seed = 0) {
    return qHashMulti(seed, name.rawValue, name.defaultShortcut.has_value(),
                      name.defaultShortcut.value_or(Shortcut{}));
}

} // namespace kestrova
