#pragma once

#include "tests/desktop/SelectionScript.h"
#include "tests/desktop/XConnection.h"

#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace kestrova::test {

/// A client that owns the clipboard from construction on, until another one takes it or it goes. It answers
/// as its script says, on a connection and a thread of its own. Throws std::runtime_error if it cannot take
/// the clipboard.
class SelectionOwner {
public:
    SelectionOwner(const QByteArray& display, SelectionScript script);
    SelectionOwner(const SelectionOwner&) = delete;
    SelectionOwner& operator=(const SelectionOwner&) = delete;
    ~SelectionOwner();

    /// The targets that it was asked for, in order. Any thread.
    std::vector<QByteArray> requests() const;
    /// How often it was asked for `target`. Any thread.
    int requestsFor(const QByteArray& target) const;
    /// True once another client has the clipboard. Any thread.
    bool isReplaced() const { return m_replaced; }

private:
    struct Transfer {
        xcb_atom_t type = 0;
        QByteArray rest;
        Answer answer = Answer::Serve;
        int piecesSent = 0;
    };
    /// The requestor's window and property.
    using TransferKey = std::pair<xcb_window_t, xcb_atom_t>;

    void serve();
    bool handle(const xcb_generic_event_t& event);
    void handleRequest(const xcb_selection_request_event_t& request);
    bool continueTransfer(const xcb_property_notify_event_t& event);
    void answerTargets(const xcb_selection_request_event_t& request);
    void answerOffer(const xcb_selection_request_event_t& request, const Offer& offer, int timesAsked);
    void startTransfer(const xcb_selection_request_event_t& request, const Offer& offer);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    int note(const QByteArray& target);
    std::vector<xcb_atom_t> offeredAtoms() const;

    XConnection m_x;
    SelectionScript m_script;
    xcb_timestamp_t m_since = 0;
    std::map<TransferKey, Transfer> m_transfers;

    mutable std::mutex m_mutex;
    std::vector<QByteArray> m_requests;
    std::atomic<bool> m_replaced = false;

    int m_wakeUp = -1;
    std::thread m_thread;
};

} // namespace kestrova::test
