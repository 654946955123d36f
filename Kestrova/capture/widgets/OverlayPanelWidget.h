#pragma once

#include "Kestrova/capture/OverlayPanel.h"

#include <QPointF>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

class QScreen;

namespace kestrova {

class CompositingObserver;
class CrosshairCursor;
class MainQueue;
class SelectionOverlayWidget;
class WindowManagement;

/// The window over one display. The window manager has no say in it, and the keyboard focus stays where it
/// is: on this kind of desktop whoever takes it is in front, and menus and cards of the others would close.
///
/// Where nothing is blended it shows the picture that the session has taken of the display, so that the
/// person sees what there is to choose from.
class OverlayPanelWidget final : public OverlayPanel {
public:
    /// Where a display lies.
    struct Place {
        QScreen* screen = nullptr;
        /// Of the desktop, y downwards.
        QRect pixels;
    };
    /// What a pixel of the desktop stands for, in global points.
    enum class PixelPoint {
        /// What is under the mouse.
        centre,
        /// Where something is cut off. By the scale of the panel's display, wherever the mouse is.
        corner
    };
    /// What it refers to outlives the panel.
    struct Surroundings {
        MainQueue& mainQueue;
        WindowManagement& windowManagement;
        CrosshairCursor& crosshair;
        /// Absent if the display has gone: nothing appears then.
        std::optional<Place> place;
        std::function<QPointF(QPoint pixel, PixelPoint meaning)> pointOfPixel;
        /// Told when nothing will be drawn for a while. May be empty.
        std::function<void()> onRest = {};
    };

    explicit OverlayPanelWidget(Surroundings surroundings);
    OverlayPanelWidget(const OverlayPanelWidget&) = delete;
    OverlayPanelWidget& operator=(const OverlayPanelWidget&) = delete;
    ~OverlayPanelWidget() override;

    void setContentView(std::shared_ptr<SelectionOverlayView> view) override;
    void orderFrontRegardless() override;
    /// Does nothing: the keys come without the focus.
    void makeKey() override {}
    void orderOut() override;
    void setCursor(OverlayCursor cursor) override;
    void setNeedsDisplay() override;

    SelectionOverlayWidget& window() { return *m_window; }

private:
    /// The window may be within an event of its own, or wait for the end of one.
    struct DropLater {
        void operator()(SelectionOverlayWidget* window) const;
    };

    void moveOverDisplay();
    void adaptToCompositing();

    Surroundings m_surroundings;
    std::unique_ptr<CompositingObserver> m_compositingObserver;
    std::unique_ptr<SelectionOverlayWidget, DropLater> m_window;
    std::optional<OverlayCursor> m_cursor;
};

} // namespace kestrova
