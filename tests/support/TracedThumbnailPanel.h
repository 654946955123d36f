#pragma once

#include "Kestrova/capture/ThumbnailPanel.h"
#include "tests/support/EffectTrace.h"

#include <utility>

namespace kestrova {

/// A column of previews without a window; its lines begin with "column". What is animated is at its end at
/// once.
class TracedThumbnailPanel final : public ThumbnailPanel {
public:
    /// `onGone` is called when it goes.
    TracedThumbnailPanel(EffectTrace& effects, std::uint32_t number, std::function<void()> onGone)
        : m_trace(effects), m_number(number), m_onGone(std::move(onGone)) {}
    ~TracedThumbnailPanel() override { m_onGone(); }

    void setContent(ThumbnailColumn newColumn) override {
        column = std::move(newColumn);
        QStringList names;
        for (const auto& entry : column.entries)
            names.append(entry.suggestedName);
        m_trace.add(QStringLiteral("column.setContent %1").arg(names.join(u' ')));
    }
    std::uint32_t windowNumber() const override { return m_number; }
    bool isVisible() const override { return visible; }
    void setFrame(const ScreenRect& frame, const ScreenRect& largest) override {
        m_trace.add(QStringLiteral("column.setFrame %1 of %2x%3")
                        .arg(place(frame))
                        .arg(largest.width)
                        .arg(largest.height));
    }
    void setAlpha(double alpha) override { m_trace.add(QStringLiteral("column.setAlpha %1").arg(alpha)); }
    void animateAlpha(double alpha, AnimationDuration duration, AnimationTiming timing) override {
        m_trace.add(QStringLiteral("column.animateAlpha %1 in %2%3")
                        .arg(alpha)
                        .arg(duration.count())
                        .arg(timing == AnimationTiming::easeOut ? QString() : QStringLiteral(" otherwise")));
    }
    void orderFrontRegardless() override {
        visible = !isRefused;
        m_trace.add(QStringLiteral("column.orderFrontRegardless"));
    }
    void orderOut() override {
        visible = false;
        m_trace.add(QStringLiteral("column.orderOut"));
    }

    ThumbnailColumn column;
    bool visible = false;
    /// As behind a screen locker.
    bool isRefused = false;

private:
    static QString place(const ScreenRect& rect) {
        return QStringLiteral("%1,%2 %3x%4").arg(rect.x).arg(rect.y).arg(rect.width).arg(rect.height);
    }

    EffectTrace& m_trace;
    std::uint32_t m_number;
    std::function<void()> m_onGone;
};

} // namespace kestrova
