#pragma once

#include "Platform/EventMonitors.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <ranges>
#include <set>
#include <utility>

namespace kestrova {

/// Lets a test send events as the host would, and see which monitors are alive.
class FakeEventMonitors final : public EventMonitors {
public:
    std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) override {
        if (refusesGlobalMonitors)
            return nullptr;
        return m_global.add(mask, std::move(handler));
    }
    std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, LocalHandler handler) override {
        return m_local.add(mask, std::move(handler));
    }
    std::unique_ptr<EventMonitor> tapKeyDowns(KeyDownHandler handler) override {
        return refusesTaps ? nullptr : m_taps.add(EventMask::keyDown, std::move(handler));
    }
    std::unique_ptr<EventMonitor> addGlobalKeyDownMonitor(KeyDownHandler handler) override {
        return refusesGlobalMonitors ? nullptr : m_keyDowns.add(EventMask::keyDown, std::move(handler));
    }

    /// A press of the mouse in another application; `kind` is one of `EventMask`.
    void pressElsewhere(std::uint32_t kind) {
        // Whoever is told may drop its monitor.
        for (const auto& [mask, handler] : m_global.snapshot())
            if (mask & kind)
                handler();
    }
    /// A key event of a window of this program. Answers whether it is kept from the controls.
    bool send(const LocalEvent& event) {
        const bool isSwallowed = tell(event);
        if (event.kind != EventMask::keyDown)
            return isSwallowed;
        if (event.key.isRepeat)
            return isSwallowed || m_swallowed.contains(event.key.keyCode);
        if (isSwallowed)
            m_swallowed.insert(event.key.keyCode);
        else
            m_swallowed.erase(event.key.keyCode);
        return isSwallowed;
    }

    /// A press of a key in any application. Answers whether a tap keeps it from all of them.
    bool pressKey(std::uint16_t keyCode) {
        for (const auto& list : {m_taps.snapshot(), m_keyDowns.snapshot()})
            for (const auto& [mask, handler] : list)
                handler(keyCode);
        return m_taps.size() > 0;
    }

    std::size_t taps() const { return m_taps.size(); }
    std::size_t globalKeyDownMonitors() const { return m_keyDowns.size(); }
    std::size_t globalMonitors() const { return m_global.size(); }
    std::size_t localMonitors() const { return m_local.size(); }
    /// How many local monitors look at events of `kind`.
    std::size_t localMonitors(std::uint32_t kind) const { return m_local.size(kind); }

    bool refusesGlobalMonitors = false;
    bool refusesTaps = false;

private:
    bool tell(const LocalEvent& event) {
        for (const auto& [mask, handler] : std::views::reverse(m_local.snapshot()))
            if ((mask & event.kind) && handler(event))
                return true;
        return false;
    }

    template<typename Handler>
    class Monitors {
    public:
        using Entry = std::pair<std::uint32_t, Handler>;
        using Entries = std::list<Entry>;

        std::unique_ptr<EventMonitor> add(std::uint32_t mask, Handler handler) {
            m_entries->emplace_back(mask, std::move(handler));
            return std::make_unique<Token>(m_entries, std::prev(m_entries->end()));
        }
        Entries snapshot() const { return *m_entries; }
        std::size_t size() const { return m_entries->size(); }
        std::size_t size(std::uint32_t kind) const {
            std::size_t count = 0;
            for (const auto& [mask, handler] : *m_entries)
                count += mask & kind ? 1 : 0;
            return count;
        }

    private:
        class Token final : public EventMonitor {
        public:
            Token(std::shared_ptr<Entries> entries, typename Entries::iterator place)
                : m_list(std::move(entries)), m_place(place) {}
            ~Token() override { m_list->erase(m_place); }

        private:
            // Shared: a holder may outlive the fake.
            std::shared_ptr<Entries> m_list;
            typename Entries::iterator m_place;
        };

        std::shared_ptr<Entries> m_entries = std::make_shared<Entries>();
    };

    Monitors<GlobalHandler> m_global;
    Monitors<LocalHandler> m_local;
    Monitors<KeyDownHandler> m_taps;
    Monitors<KeyDownHandler> m_keyDowns;
    /// Whose press a monitor has swallowed.
    std::set<std::uint16_t> m_swallowed;
};

} // namespace kestrova
