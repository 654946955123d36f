#pragma once

#include "Platform/x11/X11Windows.h"
#include "Platform/x11/XcbReply.h"

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kestrova {

/// The atoms of the selection protocol.
struct SelectionAtoms {
    xcb_atom_t clipboard = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t incr = XCB_ATOM_NONE;
    /// The property that answers are asked into.
    xcb_atom_t answer = XCB_ATOM_NONE;
};

/// The value of a property, whole.
struct PropertyValue {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    QByteArray bytes;
    /// It was larger than allowed, and `bytes` is not all of it.
    bool tooLarge = false;
};

/// A connection to the X server for the selection protocol alone, with its atoms and its requestor windows.
/// One thread at a time. It waits for the X server, never for another client.
class SelectionConnection {
public:
    SelectionConnection();
    SelectionConnection(const SelectionConnection&) = delete;
    SelectionConnection& operator=(const SelectionConnection&) = delete;
    ~SelectionConnection();

    /// Notices of the clipboard's changes of hands come from now on; false if the server does not have them.
    bool watchClipboard();
    bool isBroken() const;
    int descriptor() const;
    void flush();
    /// The next event that has arrived; null if there is none.
    XcbReply<xcb_generic_event_t> nextEvent();
    /// The next event that has been read from the server already.
    XcbReply<xcb_generic_event_t> nextQueuedEvent();
    /// Whether the event is a notice of a change of hands.
    bool isOwnerNotice(const xcb_generic_event_t& event) const;

    const SelectionAtoms& atoms() const { return m_atoms; }
    const X11Windows& windows() const { return *m_windows; }
    /// Whether two windows, or other resources, were made by the same client.
    bool sameClient(std::uint32_t resource, std::uint32_t other) const;

    xcb_atom_t atom(const QByteArray& name);
    /// Names of the atoms whose names are known, and of as many others as are sane, in order.
    QList<QByteArray> names(const std::vector<xcb_atom_t>& atoms);

    /// A window that reports its properties' changes and that no answer is due to.
    xcb_window_t takeRequestor();
    /// Back for the next request: its answer has come.
    void giveBack(xcb_window_t requestor);
    /// No longer of use, but an answer may still come. The window stays for a good while: an owner that finds
    /// it gone may die of the error, and the person's copy with it.
    void abandon(xcb_window_t requestor);

    /// Asks the clipboard's owner for `target`; the sequence number of the request.
    std::uint32_t convert(xcb_window_t requestor, xcb_atom_t target, xcb_timestamp_t time);
    /// Takes the answer off the window; absent if there is none. What exceeds `limit` bytes stops the
    /// reading.
    std::optional<PropertyValue> takeAnswer(xcb_window_t requestor, qsizetype limit);
    void dropAnswer(xcb_window_t requestor, xcb_atom_t property);

private:
    xcb_connection_t* m_connection;
    std::optional<X11Windows> m_windows;
    xcb_window_t m_root = XCB_NONE;
    std::uint32_t m_resourceMask = 0;
    std::uint8_t m_firstFixesEvent = 0;
    SelectionAtoms m_atoms;
    std::unordered_map<xcb_atom_t, QByteArray> m_names;
    std::vector<xcb_window_t> m_idle;
    std::deque<xcb_window_t> m_abandoned;
};

} // namespace kestrova
