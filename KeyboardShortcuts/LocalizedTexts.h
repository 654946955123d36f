#pragma once

#include <QLocale>
#include <QString>

namespace kestrova {

/// The texts that this library shows. Each is called as translators know it.
enum class TextKey {
    space_key,
    press_shortcut,
    keyboard_shortcut_used_by_menu_item,
    keyboard_shortcut_disallowed,
    keyboard_shortcut_used_by_system,
    keyboard_shortcuts_can_be_changed,
    ok,
    force_use_shortcut,
};

/// The texts in the first of a person's languages that there is a table for; English if there is none.
class LocalizedTexts {
public:
    explicit LocalizedTexts(const QLocale& locale);

    QString text(TextKey key) const;

private:
    enum class Table { english, korean };

    Table m_table = Table::english;
};

} // namespace kestrova
