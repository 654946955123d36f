#pragma once

#include "Platform/x11/HotKeyGrabs.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrova {

/// Runs the hot keys' connection on a thread of its own: while a grabbed key freezes the keyboard, a busy
/// main thread must not stand in the way. It sleeps while no key is pressed and the keyboard
/// is with somebody.
class HotKeyThread {
public:
    /// `listener` is called on the thread. Windows of `own` are this program's.
    HotKeyThread(HotKeyGrabs::Listener listener, OwnWindows own);
    HotKeyThread(const HotKeyThread&) = delete;
    HotKeyThread& operator=(const HotKeyThread&) = delete;
    /// Returns when the thread has ended and all grabs are given back.
    ~HotKeyThread();

    /// Runs `task` on the thread and waits for it. It may wait for the X server alone.
    void run(std::function<void(HotKeyGrabs&)> task);

private:
    void loop(HotKeyGrabs::Listener listener, OwnWindows own);
    void runTasks(HotKeyGrabs& grabs);
    void wakeUp() const;

    const int m_wakeUp;
    std::atomic<bool> m_stop = false;
    std::mutex m_mutex;
    std::vector<std::function<void(HotKeyGrabs&)>> m_tasks;
    std::thread m_thread;
};

} // namespace kestrova
