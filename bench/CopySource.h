#pragma once

#include "tests/desktop/XConnection.h"

#include <QByteArray>

#include <chrono>

namespace kestrova::bench {

/// A program that copies texts, standing ready so that nothing but the copy is measured: it takes the
/// clipboard with one of two windows in turn, and answers who asks. One thread. Throws std::runtime_error if
/// it is refused.
class CopySource {
public:
    explicit CopySource(const QByteArray& display);

    /// Makes the next copy ready.
    void prepare(const QByteArray& text);
    /// Takes the clipboard with what was prepared.
    void take();
    /// Answers requests until none has come for `pause`.
    void serve(std::chrono::microseconds pause);
    /// One request to the server and back.
    void roundTrip() const;

private:
    void answer(const xcb_selection_request_event_t& request) const;

    test::XConnection m_first;
    test::XConnection m_second;
    test::XConnection* m_owner = &m_first;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_targets;
    xcb_atom_t m_utf8;
    QByteArray m_text;
    xcb_timestamp_t m_now = 0;
};

} // namespace kestrova::bench
