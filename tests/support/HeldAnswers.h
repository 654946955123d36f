#pragma once

#include "Platform/MainQueue.h"

#include <coroutine>
#include <cstddef>
#include <deque>
#include <exception>
#include <utility>

namespace kestrova {

/// Answers that tasks wait for until a test gives them, by the order of the questions. What still waits when
/// it goes is unwound as at the end of the program.
class HeldAnswers {
    struct Slot {
        std::coroutine_handle<> waiting;
        std::exception_ptr error;
        bool isGiven = false;
    };

public:
    HeldAnswers() = default;
    HeldAnswers(const HeldAnswers&) = delete;
    HeldAnswers& operator=(const HeldAnswers&) = delete;
    ~HeldAnswers() {
        for (std::size_t index = 0; index < m_slots.size(); ++index) {
            if (!m_slots[index].isGiven)
                fail(index, std::make_exception_ptr(MainQueueClosed()));
        }
    }

    class Wait {
    public:
        explicit Wait(Slot& slot) : m_slot(slot) {}
        bool await_ready() const { return m_slot.isGiven; }
        void await_suspend(std::coroutine_handle<> frame) { m_slot.waiting = frame; }
        void await_resume() const {
            if (m_slot.error)
                std::rethrow_exception(m_slot.error);
        }

    private:
        Slot& m_slot;
    };

    /// Asks; to be awaited at once.
    Wait next() { return Wait(m_slots.emplace_back()); }
    std::size_t asked() const { return m_slots.size(); }

    /// What waits for the answer goes on within the call. Each is given once.
    void give(std::size_t index) { fail(index, nullptr); }
    void fail(std::size_t index, std::exception_ptr error) {
        auto& slot = m_slots.at(index);
        slot.error = std::move(error);
        slot.isGiven = true;
        if (const auto waiting = std::exchange(slot.waiting, nullptr))
            waiting.resume();
    }

private:
    // A deque: a task that goes on may ask again while the slot is in use.
    std::deque<Slot> m_slots;
};

} // namespace kestrova
