#include "Kestrova/look/Spring.h"

#include <QtGlobal>

#include <cmath>
#include <numbers>

namespace kestrova {

Spring::Spring(const Traits& traits, double value) : m_precision(traits.precision), m_target(value) {
    Q_ASSERT(traits.dampingFraction > 0 && traits.dampingFraction < 1);
    const double undamped = 2 * std::numbers::pi / traits.response.count();
    m_decay = traits.dampingFraction * undamped;
    m_frequency = undamped * std::sqrt(1 - traits.dampingFraction * traits.dampingFraction);
}

void Spring::setTarget(double target) {
    m_distance += m_target - target;
    m_target = target;
}

void Spring::finish() {
    m_distance = 0;
    m_speed = 0;
}

void Spring::advance(std::chrono::duration<double> time) {
    const double angle = m_frequency * time.count();
    const double rest = std::exp(-m_decay * time.count());
    const double swing = (m_speed + m_decay * m_distance) / m_frequency;
    const double distance = rest * (m_distance * std::cos(angle) + swing * std::sin(angle));
    m_speed =
        rest * (m_frequency * (swing * std::cos(angle) - m_distance * std::sin(angle))) - m_decay * distance;
    m_distance = distance;
    if (std::abs(m_distance) < m_precision && std::abs(m_speed) < m_precision * m_frequency)
        finish();
}

} // namespace kestrova
