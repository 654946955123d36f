#include "KeyboardShortcuts/Modifiers.h"

namespace kestrova {

std::uint32_t carbonModifiers(std::uint32_t eventFlags) {
    std::uint32_t carbon = 0;
    for (const auto& modifier : shortcutModifiers)
        if (eventFlags & modifier.eventFlag)
            carbon |= modifier.carbon;
    return carbon;
}

std::uint32_t eventFlags(std::uint32_t carbonModifiers) {
    std::uint32_t flags = 0;
    for (const auto& modifier : shortcutModifiers)
        if (carbonModifiers & modifier.carbon)
            flags |= modifier.eventFlag;
    return flags;
}

QString modifierGlyphs(std::int64_t carbonModifiers) {
    QString glyphs;
    for (const auto& modifier : shortcutModifiers)
        if (carbonModifiers & modifier.carbon)
            glyphs += modifier.glyph;
    return glyphs;
}

} // namespace kestrova
