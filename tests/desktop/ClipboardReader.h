#pragma once

#include "tests/desktop/SelectionScript.h"
#include "tests/desktop/XConnection.h"

#include <chrono>

namespace kestrova::test {

/// Reads the clipboard as a program that pastes does, large data by INCR included.
class ClipboardReader {
public:
    explicit ClipboardReader(const QByteArray& display) : m_x(display) {}

    /// The targets that the owner offers, by name; empty if there is no owner or it refuses.
    std::vector<QByteArray> targets();
    /// What the owner gives for `target`; absent if it refuses, falls silent or goes.
    std::optional<QByteArray> read(const QByteArray& target);
    /// All that the owner offers, as a script for an owner that takes it over unchanged.
    SelectionScript readAll();

private:
    using Clock = std::chrono::steady_clock;

    /// The next event of `type`; null once `end` has passed.
    XReply<xcb_generic_event_t> waitFor(std::uint8_t type, Clock::time_point end);
    XReply<xcb_get_property_reply_t> takeProperty(xcb_atom_t property);
    std::optional<QByteArray> readPieces(xcb_atom_t property, Clock::time_point end);

    XConnection m_x;
};

} // namespace kestrova::test
