#include "tests/desktop/SelectionOwner.h"

#include <algorithm>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

/// What goes into one property, well below what a server takes in one request.
constexpr qsizetype kPieceBytes = 64 * 1024;
constexpr qsizetype kLargestWithoutIncr = 200 * 1024;

bool endsMidway(Answer answer) {
    return answer == Answer::DieMidTransfer || answer == Answer::StallMidTransfer;
}

} // namespace

SelectionOwner::SelectionOwner(const QByteArray& display, SelectionScript script)
    : m_x(display),
      m_script(std::move(script)),
      m_since(m_x.serverTime()),
      m_wakeUp(::eventfd(0, EFD_CLOEXEC)) {
    xcb_set_selection_owner(m_x.get(), m_x.window(), m_x.atom("CLIPBOARD"), m_since);
    if (m_x.clipboardOwner() != m_x.window()) {
        ::close(m_wakeUp);
        throw std::runtime_error("cannot take the clipboard");
    }
    m_thread = std::thread([this] { serve(); });
}

SelectionOwner::~SelectionOwner() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
    m_thread.join();
    ::close(m_wakeUp);
}

std::vector<QByteArray> SelectionOwner::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

int SelectionOwner::requestsFor(const QByteArray& target) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(std::ranges::count(m_requests, target));
}

void SelectionOwner::serve() {
    pollfd waiting[]{{xcb_get_file_descriptor(m_x.get()), POLLIN, 0}, {m_wakeUp, POLLIN, 0}};
    while (xcb_connection_has_error(m_x.get()) == 0) {
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_x.get())}) {
            if (!handle(*event)) {
                m_x.close();
                return;
            }
        }
        xcb_flush(m_x.get());
        ::poll(waiting, std::size(waiting), -1);
        if ((waiting[1].revents & POLLIN) != 0)
            return;
    }
}

/// False if the script wants the owner dead.
bool SelectionOwner::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
        handleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        return true;
    case XCB_SELECTION_CLEAR:
        m_replaced = true;
        return true;
    case XCB_PROPERTY_NOTIFY:
        return continueTransfer(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    default:
        return true;
    }
}

int SelectionOwner::note(const QByteArray& target) {
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(target);
    return static_cast<int>(std::ranges::count(m_requests, target));
}

void SelectionOwner::handleRequest(const xcb_selection_request_event_t& request) {
    const QByteArray target = m_x.atomName(request.target);
    const int timesAsked = note(target);
    if (target == "TARGETS") {
        answerTargets(request);
        return;
    }
    if (target == "TIMESTAMP") {
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            XCB_ATOM_INTEGER, 32, 1, &m_since);
        notify(request, request.property);
        return;
    }
    const auto offer = std::ranges::find(m_script.offers, target, &Offer::target);
    if (offer == m_script.offers.end())
        notify(request, XCB_ATOM_NONE);
    else
        answerOffer(request, *offer, timesAsked);
}

std::vector<xcb_atom_t> SelectionOwner::offeredAtoms() const {
    std::vector<xcb_atom_t> atoms{m_x.atom("TARGETS"), m_x.atom("TIMESTAMP")};
    for (const Offer& offer : m_script.offers)
        atoms.push_back(m_x.atom(offer.target));
    return atoms;
}

void SelectionOwner::answerTargets(const xcb_selection_request_event_t& request) {
    if (m_script.targetsAnswer == Answer::Silence)
        return;
    if (m_script.targetsAnswer == Answer::Refuse) {
        notify(request, XCB_ATOM_NONE);
        return;
    }
    const std::vector<xcb_atom_t> atoms = offeredAtoms();
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM,
                        32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
    notify(request, request.property);
}

void SelectionOwner::answerOffer(const xcb_selection_request_event_t& request, const Offer& offer,
                                 int timesAsked) {
    if (offer.answer == Answer::Silence)
        return;
    if (offer.answer == Answer::Refuse || (offer.answer == Answer::RefuseFirst && timesAsked == 1)) {
        notify(request, XCB_ATOM_NONE);
        return;
    }
    if (offer.promisedSize || endsMidway(offer.answer) || offer.bytes.size() > kLargestWithoutIncr) {
        startTransfer(request, offer);
        return;
    }
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        m_x.atom(offer.target), 8, static_cast<std::uint32_t>(offer.bytes.size()),
                        offer.bytes.constData());
    notify(request, request.property);
}

void SelectionOwner::startTransfer(const xcb_selection_request_event_t& request, const Offer& offer) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_x.get(), request.requestor, XCB_CW_EVENT_MASK, &events);
    const std::uint32_t size = offer.promisedSize.value_or(static_cast<std::uint32_t>(offer.bytes.size()));
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        m_x.atom("INCR"), 32, 1, &size);
    m_transfers[{request.requestor, request.property}] = {
        .type = m_x.atom(offer.target), .rest = offer.bytes, .answer = offer.answer};
    notify(request, request.property);
}

/// The requestor has taken the last piece; false if the script wants the owner dead now.
bool SelectionOwner::continueTransfer(const xcb_property_notify_event_t& event) {
    const auto found = m_transfers.find({event.window, event.atom});
    if (event.state != XCB_PROPERTY_DELETE || found == m_transfers.end())
        return true;
    Transfer& transfer = found->second;
    if (transfer.piecesSent == 1 && endsMidway(transfer.answer))
        return transfer.answer != Answer::DieMidTransfer;
    ++transfer.piecesSent;
    const QByteArray piece = transfer.rest.left(kPieceBytes);
    transfer.rest.remove(0, piece.size());
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, event.window, event.atom, transfer.type, 8,
                        static_cast<std::uint32_t>(piece.size()), piece.constData());
    if (piece.isEmpty())
        m_transfers.erase(found);
    return true;
}

void SelectionOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = property;
    xcb_send_event(m_x.get(), 0, request.requestor, 0, reinterpret_cast<const char*>(&event));
}

} // namespace kestrova::test
