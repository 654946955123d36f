#pragma once

#include "Kestrova/capture/ThumbnailEntry.h"
#include "Kestrova/look/Transition.h"

#include <QAbstractButton>
#include <QPixmap>
#include <QPoint>

#include <functional>
#include <optional>

namespace kestrova {

class ThumbnailButton;

/// One preview: the picture, and two buttons on it while the mouse is over it. It is as large as its tile.
class CapturedThumbnailItemView final : public QAbstractButton {
public:
    CapturedThumbnailItemView(ThumbnailEntry entry, QWidget* parent);

    const ThumbnailEntry& entry() const { return m_entry; }
    std::function<void()> onClick;
    std::function<void()> onEdit;
    std::function<void()> onClose;
    /// The mouse, with its button down, has left the place where it was pressed.
    std::function<void(QPoint pressedAt)> onDrag;
    /// The mouse has come, or moves on it.
    std::function<void(QPoint mouse)> onMouse;
    std::function<void()> onMouseLeft;

    bool hovering() const { return m_hovering; }
    bool editButtonHover() const;
    bool closeButtonHover() const;
    /// Whether the buttons have finished to appear or to go.
    bool isHoverLayerSettled() const { return !m_hoverLayer.isMoving(); }
    /// The mouse is there, counted from the upper left corner.
    void hover(QPoint mouse);
    void endHover();
    /// Until it rests a press on it means nothing: the person aimed at what was there before.
    void setResting(bool rests) { m_isResting = rests; }

    /// What it shows instead of the empty tile.
    void setTile(const QPixmap& tile);
    const QPixmap& tile() const { return m_tile; }
    /// Of all of it, from 0 to 1.
    void setOpacity(double opacity);

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showButtons();
    void tellOfMouse(QPoint mouse) const;

    ThumbnailEntry m_entry;
    QPixmap m_tile;
    ThumbnailButton* m_editButton;
    ThumbnailButton* m_closeButton;
    bool m_hovering = false;
    bool m_isResting = true;
    double m_opacity = 1;
    Transition m_hoverLayer;
    std::optional<QPoint> m_pressedAt;
};

} // namespace kestrova
