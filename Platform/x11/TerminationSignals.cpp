#include "Platform/x11/TerminationSignals.h"

#include <sys/signalfd.h>

#include <csignal>
#include <unistd.h>

#include <utility>

namespace kestrova {
namespace {

sigset_t terminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, signal);
    return signals;
}

} // namespace

void holdTerminationSignals() {
    const auto signals = terminationSignals();
    // Threads that start later inherit it.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> onTermination)
    : m_onTermination(std::move(onTermination)) {
    const auto signals = terminationSignals();
    m_descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        signalfd_siginfo received;
        while (read(m_descriptor, &received, sizeof received) == sizeof received)
            m_onTermination();
    });
}

TerminationSignals::~TerminationSignals() {
    m_notifier.reset();
    close(m_descriptor);
}

} // namespace kestrova
