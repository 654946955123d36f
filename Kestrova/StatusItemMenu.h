#pragma once

#include "Kestrova/StatusMenu.h"

#include <QIcon>
#include <QMenu>

#include <functional>

namespace kestrova {

/// The status item's menu on the screen: shows what a StatusMenu says each time it opens.
class StatusItemMenu final : public QMenu {
public:
    explicit StatusItemMenu(StatusMenu menu);

    /// Called before the menu opens, to bring the entries up to date. Their number and order stay.
    std::function<void(StatusMenu&)> onNeedsUpdate;
    /// An enabled entry was chosen.
    std::function<void(StatusMenuAction)> onAction;
    /// Draws a symbol by its name; without it entries have no pictures.
    std::function<QIcon(const QString& symbol)> symbolImage;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void render();
    QIcon imageOf(const StatusMenuEntry& entry) const;

    StatusMenu m_menu;
};

} // namespace kestrova
