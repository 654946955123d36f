#pragma once

#include <chrono>
#include <coroutine>
#include <cstdint>
#include <exception>
#include <functional>
#include <utility>
#include <vector>

namespace kestrova {

class MainQueue;

/// Owns one repeating or delayed block of a MainQueue and cancels it when it goes.
class ScheduledBlock {
public:
    ScheduledBlock() = default;
    ScheduledBlock(MainQueue& queue, std::uint64_t id) : m_queue(&queue), m_id(id) {}
    ScheduledBlock(ScheduledBlock&& other) noexcept;
    ScheduledBlock& operator=(ScheduledBlock&& other) noexcept;
    ~ScheduledBlock() { cancel(); }

    void cancel();
    explicit operator bool() const { return m_queue != nullptr; }

private:
    MainQueue* m_queue = nullptr;
    std::uint64_t m_id = 0;
};

/// Thrown into coroutines that still wait on a MainQueue when it is destroyed, so that their frames unwind.
/// Nobody catches it: a frame that does would outlive what it refers to.
struct MainQueueClosed : std::exception {
    const char* what() const noexcept override { return "the main queue has closed"; }
};

/// The queue of blocks that run on the main thread. Every delay of the program goes through it, so that a
/// test can turn the clock by hand.
///
/// Blocks that fall due at the same moment run in the order in which they were scheduled. A block never runs
/// within the call that schedules it. Main thread only, apart from `postFromAnyThread`.
class MainQueue {
public:
    using Block = std::function<void()>;
    using Duration = std::chrono::milliseconds;

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue();

    /// Runs `block` on the next turn; it cannot be cancelled.
    void post(Block block) { schedule(Duration::zero(), Repeat::No, std::move(block)); }
    /// Runs `block` once after `delay`; it cannot be cancelled, as the timed sequences want it.
    void after(Duration delay, Block block) { schedule(delay, Repeat::No, std::move(block)); }
    /// Runs `block` once after `delay` unless the result goes first.
    [[nodiscard]] ScheduledBlock afterUnlessCancelled(Duration delay, Block block) {
        return {*this, schedule(delay, Repeat::No, std::move(block))};
    }
    /// Runs `block` every `interval`, first after one interval, until the result goes. No tolerance is
    /// granted.
    [[nodiscard]] ScheduledBlock every(Duration interval, Block block) {
        return {*this, schedule(interval, Repeat::Yes, std::move(block))};
    }
    /// As `post`, callable from every thread.
    virtual void postFromAnyThread(Block block) = 0;

    class Delay;
    class Continuation;
    class Suspension;
    /// `co_await queue.nextTurn()`: goes on at the next turn.
    Delay nextTurn();
    /// `co_await queue.delay(50ms)`: goes on after the delay.
    Delay delay(Duration delay);
    /// `co_await queue.suspension(body)`: waits until somebody resumes it. `body` is called once, when the
    /// frame is suspended, and gets what resumes it; what it throws is thrown by the `co_await`.
    Suspension suspension(std::function<void(Continuation)> body);

protected:
    enum class Repeat { No, Yes };
    virtual std::uint64_t schedule(Duration delay, Repeat repeat, Block block) = 0;
    virtual void cancel(std::uint64_t id) = 0;

    /// Resumes every frame that still waits with MainQueueClosed. An implementation calls it first thing in
    /// its destructor, while it can still take blocks.
    void close();

private:
    friend class ScheduledBlock;

    /// Keeps the frame while `begin` sees to it that somebody resumes it.
    template<typename Begin>
    void wait(std::coroutine_handle<> frame, Begin begin);
    void resumeWaiting(std::coroutine_handle<> frame);

    std::vector<std::coroutine_handle<>> m_waiting;
    bool m_closed = false;
};

/// What `co_await` on a MainQueue waits for.
class MainQueue::Delay {
public:
    Delay(MainQueue& queue, Duration delay) : m_queue(queue), m_delay(delay) {}

    bool await_ready() const { return m_queue.m_closed; }
    void await_suspend(std::coroutine_handle<> frame);
    void await_resume() const;

private:
    MainQueue& m_queue;
    Duration m_delay;
};

/// Resumes a frame that waits for it. May be dropped: the frame then waits until the queue closes.
class MainQueue::Continuation {
public:
    /// The frame goes on at the next turn. Called at most once.
    void resume() const;

private:
    friend class Suspension;
    Continuation(MainQueue& queue, std::coroutine_handle<> frame) : m_queue(&queue), m_frame(frame) {}

    MainQueue* m_queue;
    std::coroutine_handle<> m_frame;
};

/// What `co_await` on a MainQueue waits for when somebody else says how long.
class MainQueue::Suspension {
public:
    Suspension(MainQueue& queue, std::function<void(Continuation)> body)
        : m_queue(queue), m_body(std::move(body)) {}

    bool await_ready() const { return m_queue.m_closed; }
    void await_suspend(std::coroutine_handle<> frame);
    void await_resume() const;

private:
    MainQueue& m_queue;
    std::function<void(Continuation)> m_body;
};

inline MainQueue::Delay MainQueue::nextTurn() {
    return {*this, Duration::zero()};
}
inline MainQueue::Delay MainQueue::delay(Duration delay) {
    return {*this, delay};
}
inline MainQueue::Suspension MainQueue::suspension(std::function<void(Continuation)> body) {
    return {*this, std::move(body)};
}

} // namespace kestrova
