#include "Kestrova/shelf/widgets/ItemContextMenu.h"

#include "Kestrova/shelf/ItemMenu.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "KestrovaCore/ClipboardItem.h"

#include <utility>

namespace kestrova {

namespace {

QString titleOf(const ShareTarget& target) {
    return target.means == ShareTarget::Means::mail ? QStringLiteral("메일로 보내기 (%1)").arg(target.name)
                                                    : target.name;
}

} // namespace

PanelMenu& ItemContextMenu::makeMenu(const Look& look) {
    if (m_menu)
        m_menu->close();
    m_menu = new PanelMenu(look.theme, look.ground, &m_window);
    return *m_menu;
}

void ItemContextMenu::open(const std::shared_ptr<ClipboardItem>& item, QPoint globalPosition,
                           OpenedBy openedBy, const Look& look) {
    m_item = item;
    m_place = globalPosition;
    auto& menu = makeMenu(look);
    fill(menu, itemMenu(*item, m_view), item);
    popUp(menu, {globalPosition, openedBy});
}

void ItemContextMenu::popUp(PanelMenu& menu, const Opening& opening) {
    if (opening.openedBy == OpenedBy::keyboard)
        menu.popUpForKeyboard(opening.globalPosition);
    else
        menu.popUp(opening.globalPosition);
}

void ItemContextMenu::fill(PanelMenu& menu, const std::vector<ItemMenuEntry>& entries,
                           const std::shared_ptr<ClipboardItem>& item) {
    for (const auto& entry : entries) {
        if (entry.isDivider()) {
            menu.addDivider();
            continue;
        }
        PanelMenu::Entry line{.title = entry.title,
                              .shortcut = entry.shortcut,
                              .keys = entry.keys,
                              .symbol = entry.symbol,
                              .icon = {},
                              .isEnabled = entry.isEnabled,
                              .isDestructive = entry.isDestructive,
                              .action = {}};
        if (!entry.submenu.empty()) {
            fill(menu.addSubmenu(line), entry.submenu, item);
            continue;
        }
        if (entry.action)
            line.action = [&view = m_view, action = *entry.action, item] {
                view.perform([&] { perform(action, item, view); });
            };
        menu.add(line);
    }
}

void ItemContextMenu::pickShareTarget(const std::vector<ShareTarget>& targets,
                                      std::function<void(const ShareTarget&)> done,
                                      const std::optional<Opening>& opening, const Look& look) {
    // The shelf may have gone in the turn between.
    if (!m_window.isVisible())
        return;
    auto& menu = makeMenu(look);
    for (const auto& target : targets)
        menu.add({.title = titleOf(target), .icon = target.icon, .action = [&view = m_view, done, target] {
                      view.perform([&] { done(target); });
                  }});
    if (targets.empty())
        menu.add({.title = QStringLiteral("공유할 수 있는 앱이 없어요"), .isEnabled = false});
    const auto middle = m_window.mapToGlobal(m_window.rect().center());
    popUp(menu, opening.value_or(Opening{m_place.value_or(middle), OpenedBy::pointer}));
}

void ItemContextMenu::render() {
    if (const auto item = m_item.lock(); m_menu && item && item->isDeleted())
        m_menu->close();
}

} // namespace kestrova
