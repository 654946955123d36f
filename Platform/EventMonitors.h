#pragma once

#include "Platform/KeyEvent.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kestrova {

/// Kinds of events, one bit each.
namespace EventMask {
inline constexpr std::uint32_t leftMouseDown = 1u << 1;
inline constexpr std::uint32_t rightMouseDown = 1u << 3;
inline constexpr std::uint32_t keyDown = 1u << 10;
inline constexpr std::uint32_t flagsChanged = 1u << 12;
} // namespace EventMask

/// A key event of one of the program's own windows.
struct LocalEvent {
    /// One of `EventMask`.
    std::uint32_t kind = 0;
    /// The host's number of the window that it goes to; 0 if there is none, as when the host finds by itself
    /// which modifiers are still held.
    std::uint64_t window = 0;
    KeyEvent key;
};

/// Keeps one monitor going for as long as it lives.
class EventMonitor {
public:
    virtual ~EventMonitor() = default;
};

/// Looks at events on their way. Main thread only; handlers are called there.
class EventMonitors {
public:
    using GlobalHandler = std::function<void()>;
    /// Answers whether the event is swallowed; the others go on to the control in focus.
    using LocalHandler = std::function<bool(const LocalEvent&)>;

    /// Gets a virtual key code.
    using KeyDownHandler = std::function<void(std::uint16_t keyCode)>;

    virtual ~EventMonitors() = default;

    /// Tells of presses of the mouse that go to other applications. Only the left and the right button can be
    /// asked for. Null if the host refuses.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask,
                                                                         GlobalHandler handler) = 0;
    /// Tells of keys that go to windows of this program, before the window sees them. The monitor added last
    /// is asked first; one that swallows a key keeps it from the others, too. Keys that an input
    /// method takes, or that belong to a text control by this desktop's conventions, are not told of.
    /// While a key whose press was swallowed is held, its repeats are told of, but reach no control, whatever
    /// the monitors answer: one who leaves a screen with a key does not type with it in the next one.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask,
                                                                        LocalHandler handler) = 0;

    /// Takes the keyboard from everybody, this program, its input methods and the desktop included, and tells
    /// of each press of a key, repeats too. A press of one of the program's hot keys goes to that hot key
    /// instead. Keys that were held before it are not told of until they have been let go, and a press that
    /// it has taken reaches nobody however long the key is held, also when the tap has gone by then; what is
    /// typed meanwhile does. While another program holds the keyboard its keys are told of but not kept from
    /// it; the tap takes over when the other one has given it back, at the latest after the first key or
    /// button from then on. Null if the host does not let anybody have the keyboard.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> tapKeyDowns(KeyDownHandler handler) = 0;
    /// Tells of presses of keys, whoever they go to, but for those of the program's hot keys. Keeps them from
    /// nobody. Null if the host refuses.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> addGlobalKeyDownMonitor(KeyDownHandler handler) = 0;
};

} // namespace kestrova
