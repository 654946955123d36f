#pragma once

#include "Kestrova/capture/OverlayPointer.h"
#include "Kestrova/capture/SelectionOverlayDrawing.h"
#include "Kestrova/capture/widgets/OverlayPainter.h"
#include "Kestrova/capture/widgets/OverlayText.h"

#include <QWidget>

#include <functional>
#include <memory>

class QSinglePointEvent;

namespace kestrova {

class SelectionOverlayView;

/// Covers one display with what its view draws, and tells the view of the mouse. Paints only what changed.
class SelectionOverlayWidget final : public QWidget {
public:
    /// From a pixel of the display, counted from its upper left corner, to points of the view; the pixel may
    /// lie on another display.
    using PointerOfPixel = std::function<OverlayPointer(const SelectionOverlayView& view, QPoint pixel)>;

    explicit SelectionOverlayWidget(PointerOfPixel pointerOfPixel);

    /// Null: it shows and tells nothing any more.
    void setView(std::shared_ptr<SelectionOverlayView> view);
    /// The view's drawing may be another one. Looked at in the next turn.
    void setNeedsDisplay();
    /// Whether the desktop shows where nothing is painted. Else a picture of it does, if there is one.
    void setGround(OverlayPainter::Ground ground);
    /// Takes the view's drawing over at once.
    void display();

    /// Takes it off the screen. What was pressed on it is let go on it as well, wherever the mouse is: to
    /// whom it lies over, a release that follows no press may mean a click. Until then the window stays there
    /// where nobody sees it.
    void orderOut();
    /// Whether it waits for that release.
    bool isAway() const { return m_isAway; }
    /// It is deleted as soon as it is out, and shows and tells nothing until then.
    void drop();
    /// Waits no longer.
    void endWait();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// There is a view.
    OverlayPainter painter() const;
    /// There is a view.
    OverlayPointer pointer(const QSinglePointEvent& event);
    /// Of each event of the buttons, before anything else.
    void noteButtons(Qt::MouseButtons held) { m_isHeld = held != Qt::NoButton; }

    PointerOfPixel m_pointerOfPixel;
    std::shared_ptr<SelectionOverlayView> m_view;
    OverlayPainter::Ground m_ground = OverlayPainter::Ground::transparent;
    OverlayText m_text;
    OverlayDrawing m_drawing;
    OverlayPointer m_lastPointer;
    bool m_isDisplayDue = false;
    /// A button that was pressed on it is down.
    bool m_isHeld = false;
    bool m_isAway = false;
    bool m_isDropped = false;
};

} // namespace kestrova
