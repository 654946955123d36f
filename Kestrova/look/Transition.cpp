#include "Kestrova/look/Transition.h"

#include <utility>

namespace kestrova {

Transition::Transition(std::chrono::milliseconds duration, QEasingCurve::Type easing,
                       std::function<void()> onStep)
    : m_onStep(std::move(onStep)) {
    m_animation.setDuration(static_cast<int>(duration.count()));
    m_animation.setEasingCurve(easing);
    QObject::connect(&m_animation, &QVariantAnimation::valueChanged,
                     [this](const QVariant& value) { setValue(value.toDouble()); });
}

void Transition::glideTo(bool on) {
    if (std::exchange(m_isOn, on) == on)
        return;
    m_animation.stop();
    m_animation.setStartValue(m_value);
    m_animation.setEndValue(end());
    m_animation.start();
}

void Transition::jumpTo(bool on) {
    m_isOn = on;
    m_animation.stop();
    setValue(end());
}

void Transition::setValue(double value) {
    if (std::exchange(m_value, value) != value)
        m_onStep();
}

} // namespace kestrova
