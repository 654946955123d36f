#include "Platform/x11/HotKeyThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <future>
#include <memory>
#include <utility>

namespace kestrova {

HotKeyThread::HotKeyThread(HotKeyGrabs::Listener listener, OwnWindows own)
    : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_thread([this, listener = std::move(listener), own]() mutable { loop(std::move(listener), own); }) {}

HotKeyThread::~HotKeyThread() {
    m_stop = true;
    wakeUp();
    m_thread.join();
    ::close(m_wakeUp);
}

void HotKeyThread::run(std::function<void(HotKeyGrabs&)> task) {
    // Shared, because the thread may still be within the promise when the waiting has ended.
    const auto done = std::make_shared<std::promise<void>>();
    {
        const std::lock_guard lock{m_mutex};
        m_tasks.emplace_back([done, task = std::move(task)](HotKeyGrabs& grabs) {
            task(grabs);
            done->set_value();
        });
    }
    wakeUp();
    done->get_future().wait();
}

void HotKeyThread::loop(HotKeyGrabs::Listener listener, OwnWindows own) {
    HotKeyGrabs grabs{std::move(listener), own};
    while (!m_stop) {
        std::uint64_t wakeUps = 0;
        // Nothing to read is the common case: an event of the server's woke it.
        [[maybe_unused]] const auto bytes = ::read(m_wakeUp, &wakeUps, sizeof wakeUps);
        runTasks(grabs);
        // A task may have read events along with its answers; no descriptor tells of those.
        grabs.dispatchEvents();
        // A broken connection is always readable.
        pollfd descriptors[2] = {{m_wakeUp, POLLIN, 0}, {grabs.descriptor(), POLLIN, 0}};
        const auto pause = grabs.untilNextDispatch();
        ::poll(descriptors, grabs.isUsable() ? 2 : 1, pause ? static_cast<int>(pause->count()) : -1);
    }
}

void HotKeyThread::runTasks(HotKeyGrabs& grabs) {
    std::vector<std::function<void(HotKeyGrabs&)>> tasks;
    {
        const std::lock_guard lock{m_mutex};
        tasks.swap(m_tasks);
    }
    for (const auto& task : tasks)
        task(grabs);
}

void HotKeyThread::wakeUp() const {
    const std::uint64_t one = 1;
    // It fails only when the counter is full, and then the thread is about to wake anyway.
    [[maybe_unused]] const auto bytes = ::write(m_wakeUp, &one, sizeof one);
}

} // namespace kestrova
