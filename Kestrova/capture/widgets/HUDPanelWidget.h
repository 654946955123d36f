#pragma once

#include "Kestrova/capture/HUDPanel.h"

#include <QRect>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

class QGraphicsDropShadowEffect;

namespace kestrova {

class HUDView;
class WindowManagement;

/// The toast's window. The window manager has no say in it, so that it stands on every workspace and the
/// keyboard stays where it is. It is larger than what it shows, by the room that the shadow needs; a click
/// there goes to what lies below.
class HUDPanelWidget final : public QWidget, public HUDPanel {
public:
    struct Surroundings {
        WindowManagement& windowManagement;
        /// A rectangle of the screen in the toolkit's coordinates.
        std::function<QRect(const ScreenRect&)> toolkitRect;
        /// Told when nothing will be drawn for a while. May be empty.
        std::function<void()> onRest = {};
    };

    /// What it is given outlives it.
    explicit HUDPanelWidget(Surroundings surroundings);

    void setContent(HUDEvent event, std::function<void()> onTap) override;
    QSizeF fittingSize() const override;
    bool isVisible() const override { return QWidget::isVisible(); }
    ScreenRect frame() const override { return m_frame; }
    void setFrame(const ScreenRect& frame) override;
    void setAlpha(double alpha) override;
    void animate(const ScreenRect& frame, double alpha, AnimationDuration duration,
                 AnimationTiming timing) override;
    void orderFrontRegardless() override;
    void orderOut() override;

    const HUDView& view() const { return *m_view; }

private:
    void place(const ScreenRect& frame);
    /// Looks whether the window is blended with what lies behind it, and gives it the shape of the view.
    void adaptToScreen();

    Surroundings m_surroundings;
    HUDView* m_view;
    QGraphicsDropShadowEffect* m_shadow;
    ScreenRect m_frame;
    QVariantAnimation m_frameAnimation;
    QVariantAnimation m_alphaAnimation;
};

} // namespace kestrova
