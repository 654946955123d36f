#pragma once

#include "Platform/x11/AtspiBus.h"
#include "Platform/x11/FocusMemory.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace kestrova {

/// One text on its way into another application, shared by the thread that asks and the one that does it.
class AtspiRequest {
public:
    using Clock = AtspiBus::Clock;

    AtspiRequest(std::int64_t processIdentifier, QString windowTitle, QString text)
        : m_processIdentifier(processIdentifier),
          m_windowTitle(std::move(windowTitle)),
          m_text(std::move(text)) {}

    /// Until then the element must be found and read.
    static constexpr std::chrono::milliseconds timeToRead{250};
    /// Until then, from the beginning, the change must be through.
    static constexpr std::chrono::milliseconds timeToWrite{450};

    std::int64_t processIdentifier() const { return m_processIdentifier; }
    const QString& windowTitle() const { return m_windowTitle; }
    const QString& text() const { return m_text; }
    Clock::time_point readDeadline() const { return m_begin + timeToRead; }
    Clock::time_point writeDeadline() const { return m_begin + timeToWrite; }

    /// Either it is given up before anything was changed, or it is carried out and its answer is waited for:
    /// of these two operations one succeeds, once.
    bool beginWriting() { return !m_isDecided.exchange(true); }
    bool giveUp() { return !m_isDecided.exchange(true); }

private:
    const std::int64_t m_processIdentifier;
    const QString m_windowTitle;
    const QString m_text;
    const Clock::time_point m_begin = Clock::now();
    std::atomic<bool> m_isDecided = false;
};

/// Talks to the accessibility bus on a thread of its own, which may wait: it follows where the focus goes,
/// and puts texts in. It connects when the desktop's accessibility service is there, with a
/// second attempt if it is not ready, and never starts one.
class AtspiWorker {
public:
    /// Called on the worker's thread.
    using Answer = std::function<void(bool)>;

    explicit AtspiWorker(std::string sessionBusAddress);
    AtspiWorker(const AtspiWorker&) = delete;
    AtspiWorker& operator=(const AtspiWorker&) = delete;
    /// Calls under way are ended at once; requests that wait are not answered.
    ~AtspiWorker();

    bool isConnected() const { return m_isConnected; }
    void submit(std::shared_ptr<AtspiRequest> request, Answer answer);

private:
    struct ContextUnref {
        void operator()(GMainContext* context) const { g_main_context_unref(context); }
    };
    struct LoopUnref {
        void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    };
    struct SourceDestroy {
        void operator()(GSource* source) const {
            g_source_destroy(source);
            g_source_unref(source);
        }
    };

    void run();
    void post(std::function<void()> block);
    void connect();
    bool tryToConnect();
    void connectLater();
    void disconnect();
    void listen();
    void askForEvents();
    bool carryOut(AtspiRequest& request);

    const std::string m_sessionBusAddress;
    const std::unique_ptr<GMainContext, ContextUnref> m_context{g_main_context_new()};
    const std::unique_ptr<GMainLoop, LoopUnref> m_loop{g_main_loop_new(m_context.get(), FALSE)};
    const GObjectPointer<GCancellable> m_cancellable{g_cancellable_new()};
    std::atomic<bool> m_isConnected = false;

    // The thread's own from here on.
    std::optional<AtspiBus> m_session;
    std::optional<AtspiBus> m_bus;
    unsigned m_registryWatch = 0;
    unsigned m_focusEvents = 0;
    /// Set while a second attempt to connect is due.
    std::unique_ptr<GSource, SourceDestroy> m_retry;
    FocusMemory m_memory;

    std::thread m_thread;
};

} // namespace kestrova
