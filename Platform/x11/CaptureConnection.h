#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrova {

/// A connection to the X server for the pixels of the screen alone. What the server keeps for it goes with
/// it. One thread at a time, apart from `cutOff`.
class CaptureConnection {
public:
    CaptureConnection();
    CaptureConnection(const CaptureConnection&) = delete;
    CaptureConnection& operator=(const CaptureConnection&) = delete;
    ~CaptureConnection();

    /// Nothing else may be asked of one that was never made.
    bool isBroken() const;
    /// Ends every wait for the server, now and later; from every thread.
    void cutOff();

    xcb_connection_t* get() const { return m_connection; }
    const xcb_screen_t& screen() const { return *m_screen; }
    /// Whether the server writes pixels into memory that it is handed by descriptor.
    bool hasSharedMemory() const { return m_hasSharedMemory; }
    /// Whether the contents of windows can be had, whatever covers them.
    bool hasComposite() const { return m_hasComposite; }
    /// Whether the server tells where windows are painted.
    bool hasDamage() const { return m_hasDamage; }
    /// Of the notices that a window was painted.
    std::uint8_t firstDamageEvent() const { return m_firstDamageEvent; }
    /// Whether another program puts the windows together on the screen.
    bool isCompositing() const;

    /// Whether this connection has made the server keep the contents of covered windows.
    bool keepsContents = false;

private:
    xcb_connection_t* m_connection = nullptr;
    const xcb_screen_t* m_screen = nullptr;
    xcb_atom_t m_compositorSelection = XCB_ATOM_NONE;
    bool m_hasSharedMemory = false;
    bool m_hasComposite = false;
    bool m_hasDamage = false;
    std::uint8_t m_firstDamageEvent = 0;
};

/// Nothing changes on the screen, and no other program is heard by the server, while this lives. To be
/// short.
class ServerGrab {
public:
    explicit ServerGrab(xcb_connection_t* connection);
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;
    ~ServerGrab();

private:
    xcb_connection_t* m_connection;
};

} // namespace kestrova
