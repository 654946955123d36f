#pragma once

#include "Platform/KeyboardLayout.h"

namespace kestrova {

class X11Keymap;

/// What the server's keymap writes on the keys.
class X11KeyboardLayout final : public KeyboardLayout {
public:
    /// `keymap` outlives the object.
    explicit X11KeyboardLayout(X11Keymap& keymap) : m_keymap(keymap) {}

    std::optional<QString> text(std::uint16_t keyCode) const override;

private:
    X11Keymap& m_keymap;
};

} // namespace kestrova
