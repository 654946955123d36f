#pragma once

#include "Kestrova/shelf/controls/PanelButton.h"
#include "Kestrova/shelf/widgets/DragStart.h"

#include <optional>

namespace kestrova {

/// One lens in the sidebar, with the number of its items.
class SidebarRow final : public PanelButton {
public:
    struct Values {
        QString symbol;
        QString title;
        std::size_t count = 0;
        bool isSelected = false;
        /// The arrow keys work in the sidebar.
        bool isInActiveLane = false;
        /// Of the bar of a collection; absent for the fixed rows.
        std::optional<QColor> color = {};
        /// The digit that chooses the row, while it is told.
        std::optional<int> optionShortcut = {};

        bool operator==(const Values&) const = default;
    };

    explicit SidebarRow(QWidget* parent);

    /// The person asks for the row's menu at a place of the screen. May be empty.
    std::function<void(QPoint globalPosition)> onContextMenu;

    /// The person begins to drag the row. May be empty.
    std::function<void(const DragPicture&)> onDrag;

    void render(const Values& values, const ShelfTheme& theme);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void paintRow(QPainter& painter);
    QColor barColor() const;
    QColor symbolColor() const;

    Values m_values;
    std::optional<QPoint> m_pressedAt;
    int m_digit = 0;
    Transition m_digitShown;
};

} // namespace kestrova
