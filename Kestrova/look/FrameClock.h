#pragma once

#include <QAbstractAnimation>

#include <chrono>
#include <functional>

namespace kestrova {

/// Beats once a frame for what moves by rules of its own. Main thread only.
class FrameClock final : public QAbstractAnimation {
public:
    /// `onFrame` gets the time since the frame before; it may stop the clock.
    explicit FrameClock(std::function<void(std::chrono::milliseconds)> onFrame);

    /// Does nothing while it runs.
    void run();
    /// Until it is stopped.
    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    std::function<void(std::chrono::milliseconds)> m_onFrame;
    int m_lastFrame = 0;
};

} // namespace kestrova
