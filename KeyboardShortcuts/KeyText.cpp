#include "KeyboardShortcuts/KeyText.h"

#include "KeyboardShortcuts/Modifiers.h"
#include "KeyboardShortcuts/SpecialKey.h"
#include "Platform/KeyboardLayout.h"

#include <QTextBoundaryFinder>

#include <utility>

namespace kestrova {
namespace {

bool isOneCharacter(const QString& text) {
    // A key that gives more is one of a macro or of a whole phrase: too long to stand in a shortcut.
    constexpr qsizetype mostUnits = 4;
    if (text.isEmpty() || text.size() > mostUnits)
        return false;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    return characters.toNextBoundary() == text.size();
}

} // namespace

std::optional<QString> KeyText::text(std::int64_t keyCode) const {
    if (const auto special = specialKey(keyCode))
        return kestrova::text(*special, m_texts);
    if (!std::in_range<std::uint16_t>(keyCode))
        return std::nullopt;
    const auto character = m_layout.text(static_cast<std::uint16_t>(keyCode));
    if (!character || !isOneCharacter(*character))
        return std::nullopt;
    return character->toUpper();
}

QString KeyText::description(const Shortcut& shortcut) const {
    // Neither the glyphs nor the replacement character has a case, so the whole is capitalised as it stands.
    return modifierGlyphs(shortcut.carbonModifiers) +
           text(shortcut.carbonKeyCode).value_or(QString(QChar(QChar::ReplacementCharacter)));
}

} // namespace kestrova
