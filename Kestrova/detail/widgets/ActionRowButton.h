#pragma once

#include "Kestrova/detail/ActionRow.h"
#include "Kestrova/shelf/controls/PanelButton.h"

#include <functional>

namespace kestrova {

/// A line of the card, as the state says it is. Keys are the card's: it takes none.
class ActionRowButton final : public PanelButton {
public:
    explicit ActionRowButton(QWidget* parent);

    /// The toolkit has told of the pointer here; it need not have moved.
    std::function<void(QPoint globalPosition)> onPointerMove;
    std::function<void()> onPointerLeave;

    void render(const ActionRow& row, bool isHighlighted, const ShelfTheme& theme);
    static int rowHeight();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct Looks {
        QString icon;
        QString label;
        QString shortcut;
        bool destructive = false;
        bool disabled = false;
        bool isHighlighted = false;
        bool operator==(const Looks&) const = default;
    };

    QColor iconColor() const;
    QColor labelColor() const;

    Looks m_looks;
};

} // namespace kestrova
