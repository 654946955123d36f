#pragma once

#include <chrono>

namespace kestrova::bench {

/// Runs from construction on.
class Stopwatch {
public:
    double milliseconds() const { return elapsed<std::milli>(); }
    double microseconds() const { return elapsed<std::micro>(); }
    double nanoseconds() const { return elapsed<std::nano>(); }

private:
    using Clock = std::chrono::steady_clock;

    template<typename Unit>
    double elapsed() const {
        return std::chrono::duration<double, Unit>(Clock::now() - m_start).count();
    }

    Clock::time_point m_start = Clock::now();
};

} // namespace kestrova::bench
