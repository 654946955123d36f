#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRectF>

#include <functional>

class QColor;
class QMimeData;
class QPainter;
class QWidget;

namespace kestrova {

class MainQueue;
class ShelfPanelView;

/// What the pointer carries during a drag.
struct DragPicture {
    QPixmap pixmap;
    /// The place of the pointer in it, in points.
    QPoint hotSpot;
};

/// A plate of that size on which `paint` draws; as fine as the screen of `widget`.
DragPicture dragPicture(const QWidget& widget, QSize size, QPoint hotSpot, const QColor& ground,
                        const std::function<void(QPainter&)>& paint);

/// Whether the pointer, with its left button down, has gone so far from where it was pressed that a drag is
/// meant.
bool isDragMeant(QPoint pressed, QPoint now);

/// Hands drags to the desktop.
class DragStart {
public:
    /// All of them outlive it, `source` apart, which may go during a drag.
    DragStart(ShelfPanelView& view, MainQueue& mainQueue, QWidget& source)
        : m_view(view), m_mainQueue(mainQueue), m_source(source) {}

    /// On the next turn, unless the button has been let go by then. `begin` tells the state and answers what
    /// is dragged, or null if there is no longer anything to drag. Other programs may only copy it.
    void start(DragPicture picture, std::function<QMimeData*()> begin);

    /// A drag is over, wherever it has ended.
    std::function<void()> onEnd;

private:
    ShelfPanelView& m_view;
    MainQueue& m_mainQueue;
    QWidget& m_source;
};

} // namespace kestrova
