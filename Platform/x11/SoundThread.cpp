#include "Platform/x11/SoundThread.h"

#include <QLoggingCategory>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcSound, "kestrova.sound")

} // namespace

/// Shared with the thread, which may outlive the object.
struct SoundThread::State {
    const MakeSoundBackend makeBackend;
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<std::string> next;
    bool isRunning = false;
    bool isStopping = false;
};

SoundThread::SoundThread(MakeSoundBackend makeBackend, std::chrono::milliseconds timeToEnd)
    : m_state(std::make_shared<State>(std::move(makeBackend))), m_timeToEnd(timeToEnd) {}

SoundThread::~SoundThread() {
    std::unique_lock lock(m_state->mutex);
    m_state->isStopping = true;
    m_state->changed.notify_all();
    m_state->changed.wait_for(lock, m_timeToEnd, [this] { return !m_state->isRunning; });
}

void SoundThread::play(std::string path) {
    const std::lock_guard lock(m_state->mutex);
    m_state->next = std::move(path);
    m_state->changed.notify_all();
    if (std::exchange(m_state->isRunning, true))
        return;
    try {
        std::thread([state = m_state] { run(*state); }).detach();
    } catch (const std::system_error& error) {
        // Too many threads. The next sound may find a place.
        m_state->isRunning = false;
        m_state->next.reset();
        if (!std::exchange(m_hasReported, true))
            qCWarning(lcSound, "[SoundPlayer] no thread for sounds: %s", error.what());
    }
}

void SoundThread::run(State& state) {
    auto backend = state.makeBackend();
    std::unique_lock lock(state.mutex);
    while (true) {
        state.changed.wait(lock, [&state] { return state.isStopping || state.next; });
        if (state.isStopping)
            break;
        const std::string path = *std::exchange(state.next, std::nullopt);
        lock.unlock();
        backend->play(path);
        lock.lock();
    }
    lock.unlock();
    backend.reset();
    lock.lock();
    state.isRunning = false;
    state.changed.notify_all();
}

} // namespace kestrova
