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
        std::chrono::milliseconds slowest{};
    };
    /// Ends the measurement.
    Result stop();

private:
    void measure(const QString& busAddress);

    std::atomic<bool> m_stopping = false;
    Result m_result;
    std::thread m_thread;
};

} // namespace kestrova::test
