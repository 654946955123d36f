#pragma once

#include "KeyboardShortcuts/ShortcutName.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace kestrova {

/// Owns one observation of the shortcuts and ends it when it goes, before or after what is observed.
class [[nodiscard]] ShortcutObservation {
public:
    using Observer = std::function<void(const ShortcutName&)>;
    using Observers = std::map<std::uint64_t, Observer>;

    ShortcutObservation() = default;
    ShortcutObservation(std::weak_ptr<Observers> observers, std::uint64_t id)
        : m_observers(std::move(observers)), m_id(id) {}
    ShortcutObservation(ShortcutObservation&&) noexcept = default;
    ShortcutObservation& operator=(ShortcutObservation&& other) noexcept;
    ~ShortcutObservation();

private:
    std::weak_ptr<Observers> m_observers;
    std::uint64_t m_id = 0;
};

/// Who is told that something happened to a name. Main thread only.
class NameObservers {
public:
    ShortcutObservation add(ShortcutObservation::Observer observer);
    /// Calls every observer. One may end any observation meanwhile, its own included; those added meanwhile
    /// are not called.
    void notify(const ShortcutName& name) const;

private:
    std::shared_ptr<ShortcutObservation::Observers> m_observers =
        std::make_shared<ShortcutObservation::Observers>();
    std::uint64_t m_lastID = 0;
};

} // namespace kestrova
