#pragma once

#include <QByteArray>

#include <memory>
#include <xcb/xcb.h>

namespace kestrova::test {

/// Frees what xcb hands out for its caller to free.
struct FreeReply {
    void operator()(void* reply) const;
};
template<typename T>
using XReply = std::unique_ptr<T, FreeReply>;

/// One client's connection to a display, with one unmapped window of its own. One thread at a time. Throws
/// std::runtime_error if the display cannot be reached.
class XConnection {
public:
    explicit XConnection(const QByteArray& display);
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    ~XConnection();

    xcb_connection_t* get() const { return m_connection; }
    xcb_window_t root() const { return m_root; }
    xcb_window_t window() const { return m_window; }

    xcb_atom_t atom(const QByteArray& name) const;
    QByteArray atomName(xcb_atom_t atom) const;
    /// The server's time now, for requests that want one.
    xcb_timestamp_t serverTime() const;
    bool hasWindowManager() const;
    /// The last thing that a window manager does as it starts.
    bool hasListOfClients() const;
    /// Asks the window manager to bring the window to the front, as a task bar does.
    void requestActivation(xcb_window_t window) const;
    /// 0 if nobody owns the clipboard.
    xcb_window_t clipboardOwner() const;

    /// Drops the connection as a client that crashes does. Nothing else may be called afterwards.
    void close();

private:
    xcb_window_t windowProperty(xcb_window_t window, const char* property) const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = 0;
    xcb_window_t m_window = 0;
};

} // namespace kestrova::test
