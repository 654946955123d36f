#include "KeyboardShortcuts/LocalizedTexts.h"

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

struct Text {
    TextKey key;
    QStringView english;
    QStringView korean;
};

constexpr std::array texts{
    Text{TextKey::space_key, u"space", u"스페이스"},
    Text{TextKey::press_shortcut, u"Press Shortcut", u"단축키 입력"},
    Text{TextKey::keyboard_shortcut_used_by_menu_item,
         u"This shortcut cannot be used, because an item of this program’s menu has it already.",
         u"이 프로그램의 메뉴 항목이 이미 쓰고 있어 이 단축키를 사용할 수 없습니다."},
    Text{TextKey::keyboard_shortcut_disallowed,
         u"This shortcut cannot be used: this version of the system does not allow Option with a key alone.",
         u"이 버전의 시스템에서는 Option과 키 하나만으로 된 단축키를 사용할 수 없습니다."},
    Text{TextKey::keyboard_shortcut_used_by_system, u"The system already uses this shortcut.",
         u"시스템에서 이미 쓰고 있는 단축키입니다."},
    Text{TextKey::keyboard_shortcuts_can_be_changed,
         u"The system’s own shortcuts can be changed in its keyboard settings.",
         u"시스템 단축키는 시스템의 키보드 설정에서 바꿀 수 있습니다."},
    Text{TextKey::ok, u"OK", u"확인"},
    Text{TextKey::force_use_shortcut, u"Use Anyway", u"그래도 사용"},
};

} // namespace

LocalizedTexts::LocalizedTexts(const QLocale& locale) {
    for (const auto& language : locale.uiLanguages()) {
        const auto spoken = QLocale(language).language();
        if (spoken != QLocale::Korean && spoken != QLocale::English)
            continue;
        m_table = spoken == QLocale::Korean ? Table::korean : Table::english;
        return;
    }
}

QString LocalizedTexts::text(TextKey key) const {
    const auto* const found = std::ranges::find(texts, key, &Text::key);
    return (m_table == Table::korean ? found->korean : found->english).toString();
}

} // namespace kestrova
