#include "Platform/x11/SelectionReader.h"

#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/PasteboardLog.h"

#include <xcb/xfixes.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace kestrova {

namespace {

using Clock = SelectionFetch::Clock;

int millisecondsUntil(Clock::time_point due) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

} // namespace

SelectionReader::SelectionReader(std::uint32_t ownResource, QString bundleIdentifier, DesktopEntries& entries,
                                 OnFetched onFetched)
    : m_ownResource(ownResource),
      m_bundleIdentifier(std::move(bundleIdentifier)),
      m_entries(entries),
      m_onFetched(std::move(onFetched)),
      m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_connection.isBroken() || m_wakeUp < 0 || !m_connection.watchClipboard()) {
        qCWarning(lcPasteboard,
                  "[Pasteboard] The X server cannot be watched: copies of other programs are not seen");
        return;
    }
    m_thread = std::thread{[this] { run(); }};
}

SelectionReader::~SelectionReader() {
    m_stop = true;
    if (m_thread.joinable()) {
        // The counter starts at zero and is written to here only: the write cannot fail.
        ::eventfd_write(m_wakeUp, 1);
        m_thread.join();
    }
    if (m_wakeUp >= 0)
        ::close(m_wakeUp);
}

void SelectionReader::run() {
    while (!m_stop) {
        dispatchEvents();
        const auto now = Clock::now();
        for (auto& fetch : m_fetches)
            fetch.onTime(now);
        deliver();
        m_connection.flush();
        if (m_connection.isBroken()) {
            qCWarning(lcPasteboard,
                      "[Pasteboard] The X server has gone: copies of other programs are no longer seen");
            return;
        }
        // Sending may have read events as well; those would not wake the wait.
        if (const auto event = m_connection.nextQueuedEvent())
            dispatch(*event);
        else
            wait();
    }
}

void SelectionReader::wait() const {
    auto due = Clock::time_point::max();
    for (const auto& fetch : m_fetches)
        due = std::min(due, fetch.due());
    const int timeout = m_fetches.empty() ? -1 : millisecondsUntil(due);
    std::array<pollfd, 2> descriptors{{{m_connection.descriptor(), POLLIN, 0}, {m_wakeUp, POLLIN, 0}}};
    if (::poll(descriptors.data(), descriptors.size(), timeout) < 0 && errno != EINTR)
        qCWarning(lcPasteboard, "[Pasteboard] Waiting for the X server failed: error %d", errno);
}

void SelectionReader::dispatchEvents() {
    while (!m_stop) {
        const auto event = m_connection.nextEvent();
        if (!event)
            return;
        dispatch(*event);
    }
}

void SelectionReader::dispatch(const xcb_generic_event_t& event) {
    constexpr std::uint8_t typeMask = 0x7f;
    if (m_connection.isOwnerNotice(event))
        onOwnerNotice(event);
    else if ((event.response_type & typeMask) == XCB_SELECTION_NOTIFY)
        onAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    else if ((event.response_type & typeMask) == XCB_PROPERTY_NOTIFY)
        onProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    deliver();
}

void SelectionReader::onOwnerNotice(const xcb_generic_event_t& event) {
    const auto& notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notice.selection != m_connection.atoms().clipboard)
        return;
    const auto now = Clock::now();
    if (!m_fetches.empty()) {
        if (notice.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER)
            m_fetches.back().onSuperseded(event.full_sequence, now);
        else
            m_fetches.back().onOwnerGone();
    }
    if (notice.owner == XCB_WINDOW_NONE || m_connection.sameClient(notice.owner, m_ownResource))
        return;
    // The owner gets to work first; who is in front is the server's to tell.
    auto& fetch = m_fetches.emplace_back(m_connection, notice.owner, notice.selection_timestamp, now);
    fetch.setFrontmostApplication(
        frontmostApplication(m_connection.windows(), m_entries, m_bundleIdentifier));
}

void SelectionReader::onAnswer(const xcb_selection_notify_event_t& event) {
    const auto now = Clock::now();
    const bool taken =
        std::ranges::any_of(m_fetches, [&](SelectionFetch& fetch) { return fetch.onAnswer(event, now); });
    // Too late, or meant for another owner's entry: it must not stay in the server's memory.
    if (!taken && event.property != XCB_ATOM_NONE)
        m_connection.dropAnswer(event.requestor, event.property);
}

void SelectionReader::onProperty(const xcb_property_notify_event_t& event) {
    const auto now = Clock::now();
    std::ranges::any_of(m_fetches, [&](SelectionFetch& fetch) { return fetch.onProperty(event, now); });
}

void SelectionReader::deliver() {
    while (!m_fetches.empty() && m_fetches.front().isOver()) {
        auto fetched = m_fetches.front().take();
        m_fetches.pop_front();
        if (fetched)
            m_onFetched(*std::move(fetched));
    }
}

} // namespace kestrova
