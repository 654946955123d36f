#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kestrova {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that a program that is told to go ends
/// as cleanly as one that is quit. One instance at a time. Main thread only.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onTermination);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    /// The signals have their default effect again.
    ~TerminationSignals();

private:
    std::function<void()> m_onTermination;
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kestrova
