#include "KeyboardShortcuts/LocalizedTexts.h"

#include <gtest/gtest.h>

#include <array>

namespace kestrova {
namespace {

constexpr std::array keys{
    TextKey::space_key,
    TextKey::press_shortcut,
    TextKey::keyboard_shortcut_used_by_menu_item,
    TextKey::keyboard_shortcut_disallowed,
    TextKey::keyboard_shortcut_used_by_system,
    TextKey::keyboard_shortcuts_can_be_changed,
    TextKey::ok,
    TextKey::force_use_shortcut,
};

TEST(LocalizedTextsTest, EveryKeyHasATextInBothTables) {
    const LocalizedTexts english{QLocale(QLocale::English)};
    const LocalizedTexts korean{QLocale(QLocale::Korean)};
    for (const auto key : keys) {
        EXPECT_FALSE(english.text(key).isEmpty());
        EXPECT_FALSE(korean.text(key).isEmpty());
        EXPECT_NE(english.text(key), korean.text(key));
    }
    EXPECT_EQ(english.text(TextKey::space_key), u"space");
    EXPECT_EQ(korean.text(TextKey::ok), u"확인");
}

TEST(LocalizedTextsTest, OtherLanguagesReadEnglish) {
    EXPECT_EQ(LocalizedTexts{QLocale(QLocale::German)}.text(TextKey::ok), u"OK");
    EXPECT_EQ(LocalizedTexts{QLocale::c()}.text(TextKey::ok), u"OK");
    EXPECT_EQ(LocalizedTexts{QLocale(QStringLiteral("ko_KR"))}.text(TextKey::ok), u"확인");
}

} // namespace
} // namespace kestrova
