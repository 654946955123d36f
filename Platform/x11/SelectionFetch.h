#pragma once

#include "Platform/x11/SelectionConversion.h"
#include "Platform/x11/SelectionSnapshot.h"
#include "Platform/x11/SelectionTargets.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace kestrova {

class SelectionConnection;

/// The reading of one owner's entry: its targets, then one form after the other, until all are there or time
/// is up. Every point in time is handed in.
class SelectionFetch {
public:
    using Clock = std::chrono::steady_clock;

    /// Asks for the targets at once. `owner` took the clipboard at `time`, which is told to it.
    SelectionFetch(SelectionConnection& connection, xcb_window_t owner, xcb_timestamp_t time,
                   Clock::time_point now);

    /// The application in front when the owner took the clipboard.
    void setFrontmostApplication(std::optional<RunningApplication> application);

    /// Whether the event was about this fetch.
    bool onAnswer(const xcb_selection_notify_event_t& event, Clock::time_point now);
    bool onProperty(const xcb_property_notify_event_t& event, Clock::time_point now);
    void onTime(Clock::time_point now);

    /// The clipboard has changed hands again. The server had carried out the requests up to `sequence` by
    /// then; a later one went to the next owner.
    void onSuperseded(std::uint32_t sequence, Clock::time_point now);
    /// The owner is no more: nothing that is still due can come.
    void onOwnerGone();

    bool isOver() const { return m_over; }
    /// When `onTime` is due at the latest.
    Clock::time_point due() const;
    /// Once over: what was had; absent if the entry came to nothing, which is logged here.
    std::optional<FetchedSelection> take();

private:
    void ask(const QByteArray& target, xcb_atom_t atom);
    void askNext();
    void conversionEnded(Clock::time_point now);
    void planFromTargets();
    void takeForm();
    void end(const char* reason);

    SelectionConnection& m_connection;
    const xcb_window_t m_owner;
    const xcb_timestamp_t m_time;
    Clock::time_point m_deadline;
    FetchedSelection m_fetched;
    std::optional<SelectionConversion> m_conversion;
    /// Absent until the targets have come.
    std::optional<SelectionPlan> m_plan;
    /// What is still to be had; the first is being asked for.
    std::deque<SelectionRequest> m_requests;
    /// The owner refused the first request, which is to be asked once more then.
    std::optional<Clock::time_point> m_askAgainAt;
    bool m_askedAgain = false;
    bool m_superseded = false;
    bool m_over = false;
    int m_formsHad = 0;
    /// Why a form is missing, for the log.
    const char* m_reason = "";
};

} // namespace kestrova
