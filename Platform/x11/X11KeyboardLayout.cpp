#include "Platform/x11/X11KeyboardLayout.h"

#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/X11Keymap.h"

namespace kestrova {

std::optional<QString> X11KeyboardLayout::text(std::uint16_t keyCode) const {
    const auto key = x11KeyOfVirtualKey(keyCode);
    return key ? m_keymap.latinText(*key, m_keymap.currentLayout()) : std::nullopt;
}

} // namespace kestrova
