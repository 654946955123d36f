#include "Platform/MainQueue.h"

#include <algorithm>
#include <utility>

namespace kestrova {

ScheduledBlock::ScheduledBlock(ScheduledBlock&& other) noexcept
    : m_queue(std::exchange(other.m_queue, nullptr)), m_id(other.m_id) {}

ScheduledBlock& ScheduledBlock::operator=(ScheduledBlock&& other) noexcept {
    if (this != &other) {
        cancel();
        m_queue = std::exchange(other.m_queue, nullptr);
        m_id = other.m_id;
    }
    return *this;
}

void ScheduledBlock::cancel() {
    if (auto* const queue = std::exchange(m_queue, nullptr))
        queue->cancel(m_id);
}

MainQueue::~MainQueue() = default;

void MainQueue::close() {
    m_closed = true;
    // One at a time: a frame that unwinds may let go of others.
    while (!m_waiting.empty())
        resumeWaiting(m_waiting.back());
}

void MainQueue::resumeWaiting(std::coroutine_handle<> frame) {
    const auto waiting = std::ranges::find(m_waiting, frame);
    if (waiting == m_waiting.end())
        return;
    m_waiting.erase(waiting);
    frame.resume();
}

template<typename Begin>
void MainQueue::wait(std::coroutine_handle<> frame, Begin begin) {
    m_waiting.push_back(frame);
    try {
        begin();
    } catch (...) {
        // It goes on with the exception and will soon be gone.
        std::erase(m_waiting, frame);
        throw;
    }
}

void MainQueue::Delay::await_suspend(std::coroutine_handle<> frame) {
    m_queue.wait(frame, [&] {
        m_queue.schedule(m_delay, Repeat::No, [&queue = m_queue, frame] { queue.resumeWaiting(frame); });
    });
}

void MainQueue::Continuation::resume() const {
    m_queue->post([queue = m_queue, frame = m_frame] { queue->resumeWaiting(frame); });
}

void MainQueue::Suspension::await_suspend(std::coroutine_handle<> frame) {
    m_queue.wait(frame, [&] { m_body(Continuation(m_queue, frame)); });
}

void MainQueue::Suspension::await_resume() const {
    if (m_queue.m_closed)
        throw MainQueueClosed{};
}

void MainQueue::Delay::await_resume() const {
    if (m_queue.m_closed)
        throw MainQueueClosed{};
}

} // namespace kestrova
