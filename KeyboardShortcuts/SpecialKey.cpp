#include "KeyboardShortcuts/SpecialKey.h"

#include "KeyboardShortcuts/LocalizedTexts.h"

#include <algorithm>

namespace kestrova {
namespace {

QString capitalized(QString text) {
    if (!text.isEmpty())
        text = text.left(1).toUpper() + text.mid(1).toLower();
    return text;
}

} // namespace

std::optional<SpecialKey> specialKey(std::int64_t keyCode) {
    const auto* const entry = std::ranges::find(specialKeys, keyCode, &SpecialKeyEntry::keyCode);
    return entry == specialKeys.end() ? std::nullopt : std::optional{entry->key};
}

QString text(SpecialKey key, const LocalizedTexts& texts) {
    if (key == SpecialKey::space)
        return capitalized(texts.text(TextKey::space_key));
    return std::ranges::find(specialKeys, key, &SpecialKeyEntry::key)->text.toString();
}

} // namespace kestrova
