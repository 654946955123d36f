#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kestrova {

/// Makes SIGTERM, SIGINT and SIGHUP wait until a TerminationSignals takes them. To be called while the
/// process has one thread: a thread that is there already would go on taking them, and end the process.
void holdTerminationSignals();

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that a program that is told to go ends
/// as cleanly as one that is quit. The signals must be held. One instance at a time. Main thread only.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onTermination);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    std::function<void()> m_onTermination;
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kestrova
