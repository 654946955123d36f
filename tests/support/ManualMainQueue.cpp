#include "tests/support/ManualMainQueue.h"

#include <algorithm>

namespace kestrova {

std::uint64_t ManualMainQueue::schedule(Duration delay, Repeat repeat, Block block) {
    const auto id = ++m_lastID;
    m_scheduled.emplace(Place{m_now + delay, ++m_lastPlace}, Scheduled{id, delay, repeat, std::move(block)});
    return id;
}

void ManualMainQueue::cancel(std::uint64_t id) {
    std::erase_if(m_scheduled, [id](const auto& each) { return each.second.id == id; });
}

void ManualMainQueue::runFirst() {
    auto first = m_scheduled.extract(m_scheduled.begin());
    const auto block = first.mapped().block;
    if (first.mapped().repeat == Repeat::Yes) {
        first.key() = {first.key().first + first.mapped().interval, ++m_lastPlace};
        m_scheduled.insert(std::move(first));
    }
    block();
}

void ManualMainQueue::turn() {
    const Place lastOfThisTurn{m_now, m_lastPlace};
    while (!m_scheduled.empty() && m_scheduled.begin()->first <= lastOfThisTurn)
        runFirst();
}

void ManualMainQueue::advance(Duration duration) {
    const auto until = m_now + duration;
    while (!m_scheduled.empty() && m_scheduled.begin()->first.first <= until) {
        m_now = std::max(m_now, m_scheduled.begin()->first.first);
        runFirst();
    }
    m_now = until;
}

} // namespace kestrova
