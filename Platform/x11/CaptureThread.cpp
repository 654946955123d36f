#include "Platform/x11/CaptureThread.h"

#include <chrono>
#include <utility>

namespace kestrova {

namespace {

// Captures that follow each other find what the server has kept for the first one.
constexpr std::chrono::seconds untilRest{10};

} // namespace

CaptureThread::~CaptureThread() {
    stop();
}

void CaptureThread::stop() {
    {
        const std::scoped_lock lock(m_mutex);
        m_stop = true;
        m_work.clear();
        // A server that hangs must not keep the program from ending.
        if (m_connection)
            m_connection->cutOff();
    }
    m_changed.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void CaptureThread::submit(Work work) {
    {
        const std::scoped_lock lock(m_mutex);
        if (m_stop)
            return;
        m_work.push_back(std::move(work));
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }
    m_changed.notify_one();
}

CaptureThread::Work CaptureThread::next(std::unique_lock<std::mutex>& lock) {
    const auto isAwake = [this] { return m_stop || !m_work.empty(); };
    if (m_connection && !m_changed.wait_for(lock, untilRest, isAwake))
        m_connection.reset();
    m_changed.wait(lock, isAwake);
    if (m_stop)
        return nullptr;
    auto work = std::move(m_work.front());
    m_work.pop_front();
    return work;
}

void CaptureThread::run() {
    std::unique_lock lock(m_mutex);
    while (const auto work = next(lock)) {
        lock.unlock();
        work(connection());
        lock.lock();
    }
}

CaptureConnection* CaptureThread::connection() {
    if (m_connection && !m_connection->isBroken())
        return m_connection.get();
    auto made = std::make_unique<CaptureConnection>();
    const std::scoped_lock lock(m_mutex);
    if (made->isBroken() || m_stop)
        made.reset();
    m_connection = std::move(made);
    return m_connection.get();
}

} // namespace kestrova
