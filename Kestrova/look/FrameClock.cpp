#include "Kestrova/look/FrameClock.h"

#include <utility>

namespace kestrova {

FrameClock::FrameClock(std::function<void(std::chrono::milliseconds)> onFrame)
    : m_onFrame(std::move(onFrame)) {}

void FrameClock::run() {
    if (state() == Running)
        return;
    m_lastFrame = 0;
    start();
}

void FrameClock::updateCurrentTime(int milliseconds) {
    const int passed = milliseconds - std::exchange(m_lastFrame, milliseconds);
    if (passed > 0)
        m_onFrame(std::chrono::milliseconds(passed));
}

} // namespace kestrova
