#include "Kestrova/StatusItemMenu.h"

#include <QAction>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

// In windows of this program Control is the Command key, and the Super key is it everywhere.
QKeySequence withCommand(Qt::Key key) {
    return QKeySequence(Qt::CTRL | key);
}

QKeySequence keyEquivalent(const StatusMenuEntry& entry) {
    return entry.keyEquivalent.isEmpty()
               ? QKeySequence()
               : withCommand(static_cast<Qt::Key>(entry.keyEquivalent.front().toUpper().unicode()));
}

bool isCommandAlone(Qt::KeyboardModifiers modifiers) {
    modifiers.setFlag(Qt::KeypadModifier, false);
    return modifiers == Qt::ControlModifier || modifiers == Qt::MetaModifier;
}

} // namespace

StatusItemMenu::StatusItemMenu(StatusMenu menu) : m_menu(std::move(menu)) {
    // A click on the icon closes the open menu; replayed there, it would open it again.
    setAttribute(Qt::WA_NoMouseReplay);
    for (const auto& entry : m_menu) {
        if (entry.isSeparator()) {
            addSeparator();
            continue;
        }
        auto* const action = addAction(entry.title);
        action->setShortcut(keyEquivalent(entry));
        action->setShortcutVisibleInContextMenu(true);
        if (entry.action)
            QObject::connect(action, &QAction::triggered, this, [this, chosen = *entry.action] {
                if (onAction)
                    onAction(chosen);
            });
    }
    render();
    QObject::connect(this, &QMenu::aboutToShow, this, [this] {
        if (onNeedsUpdate)
            onNeedsUpdate(m_menu);
        render();
    });
}

void StatusItemMenu::keyPressEvent(QKeyEvent* event) {
    // A menu that hangs on no window is passed over when shortcuts are looked for.
    if (isCommandAlone(event->modifiers())) {
        const auto pressed = withCommand(static_cast<Qt::Key>(event->key()));
        const auto all = actions();
        const auto chosen = std::ranges::find_if(
            all, [&](const QAction* action) { return action->isEnabled() && action->shortcut() == pressed; });
        if (chosen != all.end()) {
            close();
            (*chosen)->trigger();
            return;
        }
    }
    QMenu::keyPressEvent(event);
}

void StatusItemMenu::render() {
    const auto all = actions();
    for (std::size_t line = 0; line < m_menu.size(); ++line) {
        const auto& entry = m_menu[line];
        if (entry.isSeparator())
            continue;
        auto* const action = all[static_cast<qsizetype>(line)];
        action->setText(entry.title);
        action->setEnabled(entry.isEnabled);
        action->setIcon(imageOf(entry));
        action->setIconVisibleInMenu(true);
        action->setToolTip(entry.image ? entry.image->description : QString());
    }
}

QIcon StatusItemMenu::imageOf(const StatusMenuEntry& entry) const {
    return entry.image && symbolImage ? symbolImage(entry.image->symbol) : QIcon();
}

} // namespace kestrova
