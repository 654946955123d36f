#pragma once

#include "Platform/x11/CaptureConnection.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace kestrova {

/// A thread for work that may wait for the X server, with a connection of its own. The thread starts with the
/// first work; the connection goes after some seconds without any, and with it all that the server keeps
/// for it.
class CaptureThread {
public:
    /// Gets null where there is no server to talk to. One that goes while work is under way is seen by that.
    using Work = std::function<void(CaptureConnection*)>;

    CaptureThread() = default;
    CaptureThread(const CaptureThread&) = delete;
    CaptureThread& operator=(const CaptureThread&) = delete;
    /// As `stop`.
    ~CaptureThread();

    /// Work that has not begun, and all that comes later, is dropped; what is under way is cut off from the
    /// server and awaited. A connection that is only being made cannot be cut off: against a server that
    /// hangs just then this waits for it, as did the toolkit, which connects first.
    void stop();

    /// In the order of the calls.
    void submit(Work work);

private:
    void run();
    /// Null if there is nothing left to do.
    Work next(std::unique_lock<std::mutex>& lock);
    CaptureConnection* connection();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Work> m_work;
    bool m_stop = false;
    // Made and given up by the thread; the mutex guards the pointer.
    std::unique_ptr<CaptureConnection> m_connection;
    std::thread m_thread;
};

} // namespace kestrova
