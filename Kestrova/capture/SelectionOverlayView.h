#pragma once

#include "Kestrova/capture/CaptureSession.h"
#include "Kestrova/capture/OverlayPanel.h"
#include "Kestrova/capture/OverlayPointer.h"
#include "Kestrova/capture/SelectionOverlayDrawing.h"
#include "Platform/Screens.h"

#include <QImage>
#include <QPointF>
#include <QString>

#include <memory>
#include <optional>
#include <utility>

namespace kestrova {

class AreaCaptureSession;

/// What one display shows of a capture session, and what the mouse does there. It decides nothing but where
/// things are drawn. Points that it is given, and its drawing, are in its own coordinates: points, y upwards
/// from the lower left corner of the display. Main thread only.
class SelectionOverlayView : public std::enable_shared_from_this<SelectionOverlayView> {
public:
    /// Of the display as it is when the session begins; it is not followed.
    explicit SelectionOverlayView(Screen screen) : m_screen(screen) {}

    void setSession(std::weak_ptr<AreaCaptureSession> session) { m_session = std::move(session); }
    /// The panel that shows it; null for none. It is set anew before the panel goes.
    void setPanel(OverlayPanel* panel);

    const Screen& screen() const { return m_screen; }
    ScreenRect bounds() const { return {0, 0, m_screen.frame.width, m_screen.frame.height}; }
    QPointF convertPointToScreen(QPointF point) const;
    QPointF convertPointFromScreen(QPointF globalPoint) const;

    CaptureMode mode() const { return m_mode; }
    const std::optional<QImage>& frozenImage() const { return m_frozenImage; }
    bool showsFrozen() const { return m_showsFrozen; }
    const ScreenRect& selectionRectGlobal() const { return m_selectionRectGlobal; }
    const std::optional<ScreenRect>& hoveredWindowFrameGlobal() const { return m_hoveredWindowFrameGlobal; }
    const std::optional<QString>& hoveredWindowTitle() const { return m_hoveredWindowTitle; }
    const std::optional<QPointF>& hoverPoint() const { return m_hoverPoint; }
    bool isDragging() const { return m_isDragging; }

    // Each marks the view for redraw.
    void setMode(CaptureMode mode);
    void setFrozenImage(std::optional<QImage> image);
    void setShowsFrozen(bool shows);
    void setSelectionRectGlobal(const ScreenRect& rect);
    void setHoveredWindowFrameGlobal(std::optional<ScreenRect> frame);
    void setHoveredWindowTitle(std::optional<QString> title);

    /// The pointer has come over the view, or the host asks what it is to look like.
    void cursorUpdate();
    void mouseDown(const OverlayPointer& pointer);
    /// The mouse moves while the button is held, wherever it is.
    void mouseDragged(const OverlayPointer& pointer);
    void mouseUp(const OverlayPointer& pointer);
    void mouseMoved(const OverlayPointer& pointer);
    void mouseEntered(const OverlayPointer& pointer);
    void mouseExited(const OverlayPointer& pointer);
    /// Escape, where it comes to the panel's window.
    void cancelOperation();

    OverlayDrawing drawing(const OverlayTextSize& textSize) const;

private:
    void beginMouseHandler(const OverlayPointer& pointer);
    void setNeedsDisplay();
    /// In view coordinates; absent if there is nothing in it.
    std::optional<ScreenRect> localRect(const ScreenRect& globalRect) const;
    OverlayDrawing windowModeDrawing(const OverlayTextSize& textSize) const;
    OverlayDrawing areaModeDrawing(const OverlayTextSize& textSize) const;
    /// A title that is too long for the display is cut off.
    QString windowHint(const OverlayTextSize& textSize) const;
    OverlayBadge freezeHint(const OverlayTextSize& textSize) const;
    OverlayBadge hintPill(const QString& text, const OverlayFill& fill,
                          const OverlayTextSize& textSize) const;
    OverlayBadge sizeBadge(const ScreenRect& selection, const OverlayTextSize& textSize) const;
    OverlayBadge coordinateBadge(QPointF point, const OverlayTextSize& textSize) const;

    const Screen m_screen;
    OverlayPanel* m_panel = nullptr;
    std::weak_ptr<AreaCaptureSession> m_session;
    CaptureMode m_mode = CaptureMode::area;
    std::optional<QImage> m_frozenImage;
    bool m_showsFrozen = false;
    ScreenRect m_selectionRectGlobal;
    std::optional<ScreenRect> m_hoveredWindowFrameGlobal;
    std::optional<QString> m_hoveredWindowTitle;
    std::optional<QPointF> m_hoverPoint;
    bool m_isDragging = false;
};

/// The smallest rectangle that reaches from one point to the other.
ScreenRect rectBetween(QPointF first, QPointF second);
/// What the mouse pointer is in that mode.
OverlayCursor cursorOf(CaptureMode mode);

} // namespace kestrova
