#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace kestrova {

/// What is written on the keys. Main thread only.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    /// What the key with that virtual key code gives without modifiers, dead keys shown as themselves, in the
    /// current layout or, if that one has no Latin letters, in the first of the person's layouts that has.
    /// Absent if there is no such key, or no layout can be read.
    virtual std::optional<QString> text(std::uint16_t keyCode) const = 0;
};

} // namespace kestrova
