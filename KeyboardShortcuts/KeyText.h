#pragma once

#include "KeyboardShortcuts/LocalizedTexts.h"
#include "KeyboardShortcuts/Shortcut.h"

#include <QString>

#include <optional>

namespace kestrova {

class KeyboardLayout;

/// Writes shortcuts out as the person's keyboard and language have them. Main thread only.
class KeyText {
public:
    /// `layout` outlives the object.
    KeyText(const KeyboardLayout& layout, const QLocale& locale) : m_layout(layout), m_texts(locale) {}

    /// What is written on the key in upper case; absent if the current layout gives it no single character.
    std::optional<QString> text(std::int64_t keyCode) const;
    /// The glyphs of the modifiers, then the text of the key, for which U+FFFD stands if it has none.
    QString description(const Shortcut& shortcut) const;

    const LocalizedTexts& localizedTexts() const { return m_texts; }

private:
    const KeyboardLayout& m_layout;
    const LocalizedTexts m_texts;
};

} // namespace kestrova
