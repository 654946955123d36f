#include "Platform/x11/KeptContents.h"

#include "Platform/x11/ApplicationPainting.h"
#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/RootRect.h"
#include "Platform/x11/WindowContents.h"
#include "Platform/x11/WindowList.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/composite.h>
#include <xcb/damage.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

namespace kestrova {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Applications that paint at all have begun by then.
constexpr auto untilFirstPainting = 250ms;
constexpr auto untilAllIsPainted = 500ms;
// One that paints in steps makes shorter pauses between them.
constexpr auto calm = 30ms;

/// What applications have painted of some windows since this was made.
class PaintWatch {
public:
    PaintWatch(CaptureConnection& connection, const std::map<xcb_window_t, QRegion>& wanted)
        : m_connection(connection), m_missing(wanted) {
        for (const auto& [window, region] : wanted) {
            const auto watch = xcb_generate_id(m_connection.get());
            xcb_damage_create(m_connection.get(), watch, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
            m_watches.push_back(watch);
        }
        // The first notice of each tells of the whole window, painted or not.
        sync();
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        }
    }
    PaintWatch(const PaintWatch&) = delete;
    PaintWatch& operator=(const PaintWatch&) = delete;
    ~PaintWatch() {
        for (const auto watch : m_watches)
            xcb_damage_destroy(m_connection.get(), watch);
        sync();
    }

    void wait() {
        const auto begin = Clock::now();
        auto lastPainting = begin;
        bool hasBegun = false;
        while (!m_connection.isBroken()) {
            if (takeNotices()) {
                lastPainting = Clock::now();
                hasBegun = true;
            }
            const auto due = m_missing.empty() ? lastPainting + calm
                                               : begin + (hasBegun ? untilAllIsPainted : untilFirstPainting);
            const auto end = std::min(due, begin + untilAllIsPainted);
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            if (left <= 0ms)
                return;
            pollfd descriptor{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
            ::poll(&descriptor, 1, static_cast<int>(left.count()));
        }
    }

private:
    void sync() {
        const XcbReply<xcb_get_input_focus_reply_t> reply{
            xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr)};
    }

    bool takeNotices() {
        constexpr std::uint8_t typeMask = 0x7f;
        bool hasPainted = false;
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            if ((event->response_type & typeMask) != m_connection.firstDamageEvent() + XCB_DAMAGE_NOTIFY)
                continue;
            const auto& notice = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
            hasPainted = true;
            const auto missing = m_missing.find(notice.drawable);
            if (missing == m_missing.end())
                continue;
            missing->second -= QRect(notice.geometry.x + notice.area.x, notice.geometry.y + notice.area.y,
                                     notice.area.width, notice.area.height);
            if (missing->second.isEmpty())
                m_missing.erase(missing);
        }
        return hasPainted;
    }

    CaptureConnection& m_connection;
    std::map<xcb_window_t, QRegion> m_missing;
    std::vector<xcb_damage_damage_t> m_watches;
};

} // namespace

std::map<xcb_window_t, QRegion> coveredParts(const CaptureConnection& connection,
                                             std::span<const RootChild> children,
                                             std::span<const xcb_window_t> wanted, const QRegion& area) {
    const auto screen = rootRect(connection.get(), connection.screen().root);
    std::map<xcb_window_t, QRegion> covered;
    QRegion above;
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (!child->isSeen() || !area.intersects(child->pixels))
            continue;
        const auto region = regionOf(connection, *child) & area;
        if (std::ranges::find(wanted, child->window) != wanted.end()) {
            // What is beyond the screen was lost as well.
            const auto hidden = (region & above) + (region - screen);
            if (!hidden.isEmpty())
                covered.emplace(child->window, hidden);
        }
        above += region;
    }
    return covered;
}

void keepContents(CaptureConnection& connection, std::span<const RootChild> wanted, const QRegion& area) {
    if (connection.keepsContents || !connection.hasComposite())
        return;
    const bool areKept = std::ranges::all_of(
        wanted, [&](const RootChild& child) { return WindowContents(connection, child.window).areKept(); });
    const bool isToWait = !areKept && connection.hasDamage();
    std::vector<xcb_window_t> windows;
    std::map<xcb_window_t, QRegion> paintable;
    for (const auto& child : wanted) {
        windows.push_back(child.window);
        if (isToWait)
            paintable.emplace(child.window, paintedByApplications(connection, child));
    }
    std::optional<PaintWatch> watch;
    {
        const ServerGrab grab(connection.get());
        std::map<xcb_window_t, QRegion> covered;
        if (isToWait)
            covered = coveredParts(
                connection, WindowList(connection.get(), connection.screen()).rootChildren(), windows, area);
        for (auto& [window, region] : covered)
            region &= paintable[window];
        std::erase_if(covered, [](const auto& each) { return each.second.isEmpty(); });
        xcb_composite_redirect_subwindows(connection.get(), connection.screen().root,
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        connection.keepsContents = true;
        // Before any application is heard again: what the server itself paints meanwhile is not the
        // application's work.
        if (!covered.empty())
            watch.emplace(connection, covered);
    }
    if (watch)
        watch->wait();
}

} // namespace kestrova
