#include "Platform/x11/CompositingNotices.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/Display.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QByteArray>
#include <QCoreApplication>

#include <xcb/xfixes.h>

#include <utility>

namespace kestrova {

namespace {

// The list tells kinds apart; here is but one.
constexpr std::uint32_t change = 1;

struct Observer final : CompositingObserver {
    explicit Observer(std::unique_ptr<EventMonitor> monitor) : token(std::move(monitor)) {}
    std::unique_ptr<EventMonitor> token;
};

} // namespace

CompositingNotices::CompositingNotices()
    : m_connection(toolkitConnection()), m_observers([this](bool isEmpty) { setWatching(!isEmpty); }) {
    if (!m_connection)
        return;
    m_root = screenOf(m_connection).root;
    m_selection = atomNamed(m_connection, "_NET_WM_CM_S" + QByteArray::number(screenNumber()));
    // The toolkit has told the server its version of the extension.
    const auto* const extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (extension && extension->present)
        m_firstFixesEvent = extension->first_event;
}

bool CompositingNotices::isCompositing() const {
    if (!m_connection)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr)};
    return reply && reply->owner != XCB_NONE;
}

std::unique_ptr<CompositingObserver> CompositingNotices::observe(std::function<void()> onDidChange) {
    return std::make_unique<Observer>(m_observers.add(change, std::move(onDidChange)));
}

void CompositingNotices::setWatching(bool watches) {
    // Without the extension nobody is told.
    if (m_firstFixesEvent == 0)
        return;
    constexpr std::uint32_t all = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
    xcb_xfixes_select_selection_input(m_connection, m_root, m_selection, watches ? all : 0);
    xcb_flush(m_connection);
    if (watches)
        QCoreApplication::instance()->installNativeEventFilter(this);
    else
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool CompositingNotices::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
    // The toolkit may watch the same selection by a window of its own.
    if ((event.response_type & 0x7f) == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY &&
        event.window == m_root && event.selection == m_selection)
        m_observers.any(change, [](const std::function<void()>& observer) {
            observer();
            return false;
        });
    return false;
}

} // namespace kestrova
