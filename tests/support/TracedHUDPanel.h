#pragma once

#include "Kestrova/capture/HUDPanel.h"
#include "tests/support/EffectTrace.h"

#include <utility>

namespace kestrova {

/// A toast without a window; its lines begin with "toast". What is animated is at its end at once.
class TracedHUDPanel final : public HUDPanel {
public:
    explicit TracedHUDPanel(EffectTrace& effects) : m_trace(effects) {}

    void setContent(HUDEvent newEvent, std::function<void()> newOnTap) override {
        event = newEvent;
        onTap = std::move(newOnTap);
        m_trace.add(QStringLiteral("toast.setContent %1").arg(static_cast<int>(newEvent)));
    }
    QSizeF fittingSize() const override { return fitting; }
    bool isVisible() const override { return visible; }
    ScreenRect frame() const override { return rect; }
    void setFrame(const ScreenRect& frame) override {
        rect = frame;
        m_trace.add(QStringLiteral("toast.setFrame %1").arg(place(frame)));
    }
    void setAlpha(double alpha) override { m_trace.add(QStringLiteral("toast.setAlpha %1").arg(alpha)); }
    void animate(const ScreenRect& frame, double alpha, AnimationDuration duration,
                 AnimationTiming timing) override {
        rect = frame;
        m_trace.add(QStringLiteral("toast.animate %1 to alpha %2 in %3%4")
                        .arg(place(frame))
                        .arg(alpha)
                        .arg(duration.count())
                        .arg(timing == AnimationTiming::easeOut ? QString() : QStringLiteral(" otherwise")));
    }
    void orderFrontRegardless() override {
        visible = !isRefused;
        m_trace.add(QStringLiteral("toast.orderFrontRegardless"));
    }
    void orderOut() override {
        visible = false;
        m_trace.add(QStringLiteral("toast.orderOut"));
    }

    HUDEvent event = HUDEvent::copied;
    std::function<void()> onTap;
    QSizeF fitting{100, 30};
    bool visible = false;
    /// As behind a screen locker.
    bool isRefused = false;
    ScreenRect rect;

private:
    static QString place(const ScreenRect& rect) {
        return QStringLiteral("%1,%2 %3x%4").arg(rect.x).arg(rect.y).arg(rect.width).arg(rect.height);
    }

    EffectTrace& m_trace;
};

} // namespace kestrova
