#pragma once

#include <chrono>

namespace kestrova {

/// A value that a spring pulls to its target. It keeps its speed when the target changes on the way.
class Spring {
public:
    struct Traits {
        /// The time of one swing without damping: the shorter, the stiffer.
        std::chrono::duration<double> response;
        /// Above 0 and below 1; the smaller, the further it shoots past the target.
        double dampingFraction;
        /// Closer than that to its target it comes to rest there.
        double precision;
    };

    /// At rest at `value`.
    Spring(const Traits& traits, double value);

    double value() const { return m_target + m_distance; }
    double target() const { return m_target; }
    void setTarget(double target);
    /// At rest at its target at once.
    void finish();
    void advance(std::chrono::duration<double> time);
    bool isAtRest() const { return m_distance == 0 && m_speed == 0; }

private:
    double m_decay;
    double m_frequency;
    double m_precision;
    double m_target;
    /// From the target.
    double m_distance = 0;
    /// In values a second.
    double m_speed = 0;
};

} // namespace kestrova
