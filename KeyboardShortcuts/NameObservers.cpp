#include "KeyboardShortcuts/NameObservers.h"

namespace kestrova {

ShortcutObservation& ShortcutObservation::operator=(ShortcutObservation&& other) noexcept {
    std::swap(m_observers, other.m_observers);
    std::swap(m_id, other.m_id);
    return *this;
}

ShortcutObservation::~ShortcutObservation() {
    if (const auto observers = m_observers.lock())
        observers->erase(m_id);
}

ShortcutObservation NameObservers::add(ShortcutObservation::Observer observer) {
    m_observers->emplace(++m_lastID, std::move(observer));
    return {m_observers, m_lastID};
}

void NameObservers::notify(const ShortcutName& name) const {
    // Held here: an observer may end the one who owns this list.
    const auto observers = m_observers;
    const auto last = m_lastID;
    for (auto next = observers->begin(); next != observers->end() && next->first <= last;) {
        const auto id = next->first;
        const auto observer = next->second;
        observer(name);
        next = observers->upper_bound(id);
    }
}

} // namespace kestrova
