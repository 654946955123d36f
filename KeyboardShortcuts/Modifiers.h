#pragma once

#include "Platform/HotKeys.h"
#include "Platform/KeyEvent.h"

#include <QString>

#include <array>
#include <cstdint>

namespace kestrova {

/// One modifier in both numberings and as it is written.
struct Modifier {
    std::uint32_t carbon = 0;
    std::uint32_t eventFlag = 0;
    QStringView glyph;
};

/// In the order in which they are always shown.
inline constexpr std::array shortcutModifiers{
    Modifier{CarbonModifier::control, ModifierFlags::control, u"⌃"},
    Modifier{CarbonModifier::option, ModifierFlags::option, u"⌥"},
    Modifier{CarbonModifier::shift, ModifierFlags::shift, u"⇧"},
    Modifier{CarbonModifier::command, ModifierFlags::command, u"⌘"},
    // The selector asks for the plain form of the globe, not the coloured picture.
    Modifier{CarbonModifier::function, ModifierFlags::function, u"\U0001F310\uFE0E"},
};

/// The modifiers of an event; flags that are none, such as Caps Lock, drop out.
std::uint32_t carbonModifiers(std::uint32_t eventFlags);
/// The same modifiers as an event has them.
std::uint32_t eventFlags(std::uint32_t carbonModifiers);
/// The glyphs of a Carbon mask with nothing between them.
QString modifierGlyphs(std::int64_t carbonModifiers);

} // namespace kestrova
