#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace kestrova::test {

/// Asks the running program for its status over and over, on a thread of its own, and keeps how long each
/// answer took.
class ResponseProbe {
public:
    explicit ResponseProbe(const QString& busAddress);
    ResponseProbe(const ResponseProbe&) = delete;
    ResponseProbe& operator=(const ResponseProbe&) = delete;
    ~ResponseProbe();

    struct Result {
        int answers = 0;
        int failures = 0;
        /// Half of the answers took no longer.
        std::chrono::milliseconds typical{};
        std::chrono::milliseconds slowest{};
    };
    /// Ends the measurement.
    Result stop();

private:
    void measure(const QString& busAddress);

    std::atomic<bool> m_stopping = false;
    Result m_result;
    std::vector<std::chrono::steady_clock::duration> m_durations;
    std::thread m_thread;
};

/// Whoever waits for another program waits for seconds. Beside other work any program may be kept waiting for
/// a moment, so a single answer proves nothing.
void expectPrompt(const ResponseProbe::Result& answers);

} // namespace kestrova::test
