#pragma once

#include "Kestrova/shelf/controls/Ground.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/shelf/widgets/PanelMenuStyle.h"

#include <QIcon>
#include <QMenu>
#include <QString>

#include <functional>
#include <vector>

namespace kestrova {

/// A menu in the look of the shelf. Once it has closed it deletes itself: one that is asked for again is made
/// anew.
///
/// Where windows are blended it is rounded; else opaque and rectangular.
class PanelMenu final : public QMenu {
public:
    struct Entry {
        QString title;
        /// Shown at the right.
        QString shortcut = {};
        /// Keys that choose the entry while the menu is open, whichever line is highlighted; only Return
        /// leaves that line the precedence. Control stands for the Command key, which the Super key is too.
        std::vector<QKeyCombination> keys = {};
        /// The name of one of the program's drawings; none if empty.
        QString symbol = {};
        /// Stands in the symbol's place, in its own colours.
        QIcon icon = {};
        bool isEnabled = true;
        bool isDestructive = false;
        /// Runs when the menu has gone from the screen.
        std::function<void()> action = {};
    };

    PanelMenu(const ShelfTheme& theme, Ground ground, QWidget* parent);

    void add(const Entry& entry);
    void addDivider() { addSeparator(); }
    /// The result belongs to this menu. Of the entry only the title and the picture count.
    PanelMenu& addSubmenu(const Entry& entry);

    /// Opens at a place of the screen and returns at once.
    void popUp(QPoint globalPosition) { popup(globalPosition); }
    /// The same for a person at the keyboard: the first entry is highlighted.
    void popUpForKeyboard(QPoint globalPosition);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

private:
    class Line;

    QIcon pictureOf(const Entry& entry) const;
    Line* lineFor(QKeyCombination key) const;

    const ShelfTheme m_theme;
    const Ground m_ground;
    PanelMenu* m_owner = nullptr;
    PanelMenuStyle m_style;
};

} // namespace kestrova
