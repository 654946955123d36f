#include "Platform/x11/CaptureConnection.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/Display.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/shm.h>

#include <QByteArray>

#include <sys/socket.h>

#include <utility>

namespace kestrova {

namespace {

/// Only a local socket does; others break with the attempt.
bool passesDescriptors(xcb_connection_t* connection) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return ::getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr*>(&address), &size) ==
               0 &&
           address.ss_family == AF_UNIX;
}

} // namespace

CaptureConnection::CaptureConnection() : m_connection(xcb_connect(nullptr, nullptr)) {
    if (isBroken())
        return;
    m_screen = &screenOf(m_connection);
    for (auto* const extension : {&xcb_shm_id, &xcb_composite_id, &xcb_damage_id})
        xcb_prefetch_extension_data(m_connection, extension);
    const auto selection = askForAtom(m_connection, "_NET_WM_CM_S" + QByteArray::number(screenNumber()));
    const auto isThere = [this](xcb_extension_t* extension) {
        const auto* const data = xcb_get_extension_data(m_connection, extension);
        return data && data->present != 0;
    };
    if (isThere(&xcb_shm_id) && passesDescriptors(m_connection)) {
        const XcbReply<xcb_shm_query_version_reply_t> version{
            xcb_shm_query_version_reply(m_connection, xcb_shm_query_version(m_connection), nullptr)};
        // Since then memory is handed over by descriptor. By number the server could find somebody else's:
        // numbers are not the same in every container.
        m_hasSharedMemory = version && std::pair(version->major_version, version->minor_version) >=
                                           std::pair(std::uint16_t{1}, std::uint16_t{2});
    }
    // The server answers nothing of these to clients that have not told their version.
    if (isThere(&xcb_composite_id)) {
        const XcbReply<xcb_composite_query_version_reply_t> version{xcb_composite_query_version_reply(
            m_connection,
            xcb_composite_query_version(m_connection, XCB_COMPOSITE_MAJOR_VERSION,
                                        XCB_COMPOSITE_MINOR_VERSION),
            nullptr)};
        // Since then contents have names.
        m_hasComposite = version && (version->major_version > 0 || version->minor_version >= 2);
    }
    if (isThere(&xcb_damage_id)) {
        const XcbReply<xcb_damage_query_version_reply_t> version{xcb_damage_query_version_reply(
            m_connection,
            xcb_damage_query_version(m_connection, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
            nullptr)};
        m_hasDamage = version != nullptr;
        m_firstDamageEvent = xcb_get_extension_data(m_connection, &xcb_damage_id)->first_event;
    }
    m_compositorSelection = atomOf(m_connection, selection);
}

CaptureConnection::~CaptureConnection() {
    xcb_disconnect(m_connection);
}

bool CaptureConnection::isBroken() const {
    return xcb_connection_has_error(m_connection) != 0;
}

void CaptureConnection::cutOff() {
    if (const int descriptor = xcb_get_file_descriptor(m_connection); descriptor >= 0)
        ::shutdown(descriptor, SHUT_RDWR);
}

bool CaptureConnection::isCompositing() const {
    const XcbReply<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_compositorSelection), nullptr)};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

ServerGrab::ServerGrab(xcb_connection_t* connection) : m_connection(connection) {
    xcb_grab_server(m_connection);
}

ServerGrab::~ServerGrab() {
    xcb_ungrab_server(m_connection);
    xcb_flush(m_connection);
}

} // namespace kestrova
