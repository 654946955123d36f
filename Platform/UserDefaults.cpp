#include "Platform/UserDefaults.h"

#include <cmath>

namespace kestrova {

DefaultsObservation& DefaultsObservation::operator=(DefaultsObservation&& other) noexcept {
    std::swap(m_defaults, other.m_defaults);
    std::swap(m_id, other.m_id);
    return *this;
}

DefaultsObservation::~DefaultsObservation() {
    if (m_defaults)
        m_defaults->m_observers.erase(m_id);
}

std::optional<bool> UserDefaults::boolean(const QString& key) const {
    const auto value = object(key);
    return value.isBool() ? std::optional{value.toBool()} : std::nullopt;
}

std::optional<std::int64_t> UserDefaults::integer(const QString& key) const {
    const auto value = object(key);
    // JSON knows only numbers: 500.5 is no integer, 500.0 is. Beyond 2^53 a double no longer tells integers
    // apart.
    constexpr double exactLimit = 9007199254740992.0;
    if (!value.isDouble() || std::trunc(value.toDouble()) != value.toDouble() ||
        std::abs(value.toDouble()) > exactLimit)
        return std::nullopt;
    return value.toInteger();
}

std::optional<double> UserDefaults::number(const QString& key) const {
    const auto value = object(key);
    return value.isDouble() ? std::optional{value.toDouble()} : std::nullopt;
}

std::optional<QString> UserDefaults::text(const QString& key) const {
    const auto value = object(key);
    return value.isString() ? std::optional{value.toString()} : std::nullopt;
}

DefaultsObservation UserDefaults::observe(const QString& key, Observer observer) {
    m_observers.emplace(++m_lastObserver, std::pair{key, std::move(observer)});
    return {*this, m_lastObserver};
}

void UserDefaults::notify(const QString& key) {
    // An observer may add and end observations, its own among them: walk by number, not by iterator, and not
    // on to those that are added meanwhile.
    const auto last = m_lastObserver;
    for (auto next = m_observers.begin(); next != m_observers.end() && next->first <= last;) {
        const auto id = next->first;
        if (next->second.first == key) {
            const auto observer = next->second.second;
            observer();
        }
        next = m_observers.upper_bound(id);
    }
}

} // namespace kestrova
