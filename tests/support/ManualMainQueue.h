#pragma once

#include "Platform/MainQueue.h"

#include <map>
#include <utility>

namespace kestrova {

/// The main queue with a clock that a test turns by hand.
class ManualMainQueue final : public MainQueue {
public:
    ~ManualMainQueue() override { close(); }

    /// Runs what is due now, in order, but nothing that those blocks schedule for the next turn.
    void turn();
    /// Turns the clock on by `duration`; each block runs at its own moment, and so does what it schedules.
    void advance(Duration duration);
    /// Since the queue was made.
    Duration now() const { return m_now; }
    bool isEmpty() const { return m_scheduled.empty(); }

    void postFromAnyThread(Block block) override { post(std::move(block)); }

protected:
    std::uint64_t schedule(Duration delay, Repeat repeat, Block block) override;
    void cancel(std::uint64_t id) override;

private:
    // Ordered by moment, then by the order of scheduling.
    using Place = std::pair<Duration, std::uint64_t>;
    struct Scheduled {
        std::uint64_t id = 0;
        Duration interval{};
        Repeat repeat = Repeat::No;
        Block block;
    };

    void runFirst();

    std::map<Place, Scheduled> m_scheduled;
    Duration m_now{};
    std::uint64_t m_lastPlace = 0;
    std::uint64_t m_lastID = 0;
};

} // namespace kestrova
