#pragma once

#include <QVariantAnimation>

#include <chrono>
#include <functional>

namespace kestrova {

/// A value between 0 and 1 that glides to the end that it is sent to. Main thread only.
class Transition {
public:
    /// `onStep` is called after each change of the value.
    Transition(std::chrono::milliseconds duration, QEasingCurve::Type easing, std::function<void()> onStep);

    double value() const { return m_value; }
    /// The end that it stands at or is on its way to.
    bool isOn() const { return m_isOn; }
    bool isMoving() const { return m_animation.state() == QAbstractAnimation::Running; }
    void glideTo(bool on);
    /// Ends there at once, where nobody sees the way.
    void jumpTo(bool on);
    /// Is at once where it was going.
    void finish() { jumpTo(m_isOn); }

private:
    double end() const { return m_isOn ? 1 : 0; }
    void setValue(double value);

    std::function<void()> m_onStep;
    QVariantAnimation m_animation;
    double m_value = 0;
    bool m_isOn = false;
};

} // namespace kestrova
