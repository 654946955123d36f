#pragma once

#include "Platform/EventMonitors.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <ranges>
#include <utility>
#include <vector>

namespace kestrova {

/// Monitors, of which the one added last is asked first. A handler may add and remove monitors, its own
/// included.
template<typename Handler>
class MonitorList {
public:
    /// `onEmptyChanged` is told each time the list becomes empty or is empty no longer.
    explicit MonitorList(std::function<void(bool isEmpty)> onEmptyChanged)
        : m_state(std::make_shared<State>()) {
        m_state->onEmptyChanged = std::move(onEmptyChanged);
    }
    MonitorList(const MonitorList&) = delete;
    MonitorList& operator=(const MonitorList&) = delete;
    /// Monitors that are still there may outlive the list.
    ~MonitorList() { m_state->onEmptyChanged = nullptr; }

    std::unique_ptr<EventMonitor> add(std::uint32_t mask, Handler handler) {
        auto entry = std::make_shared<Entry>(Entry{mask, std::move(handler)});
        m_state->entries.push_back(entry);
        if (m_state->entries.size() == 1)
            m_state->onEmptyChanged(false);
        return std::make_unique<Token>(m_state, std::move(entry));
    }

    /// Calls the handlers that ask for `kind` until one answers true; whether one did.
    template<typename Call>
    bool any(std::uint32_t kind, const Call& call) const {
        const auto entries = m_state->entries;
        return std::ranges::any_of(std::views::reverse(entries), [&](const std::shared_ptr<Entry>& entry) {
            return entry->isLive && (entry->mask & kind) != 0 && call(entry->handler);
        });
    }

private:
    struct Entry {
        std::uint32_t mask;
        Handler handler;
        bool isLive = true;
    };
    struct State {
        std::vector<std::shared_ptr<Entry>> entries;
        std::function<void(bool)> onEmptyChanged;
    };
    class Token final : public EventMonitor {
    public:
        Token(std::shared_ptr<State> state, std::shared_ptr<Entry> entry)
            : m_state(std::move(state)), m_entry(std::move(entry)) {}
        Token(const Token&) = delete;
        Token& operator=(const Token&) = delete;
        ~Token() override {
            m_entry->isLive = false;
            std::erase(m_state->entries, m_entry);
            if (m_state->entries.empty() && m_state->onEmptyChanged)
                m_state->onEmptyChanged(true);
        }

    private:
        std::shared_ptr<State> m_state;
        std::shared_ptr<Entry> m_entry;
    };

    std::shared_ptr<State> m_state;
};

} // namespace kestrova
