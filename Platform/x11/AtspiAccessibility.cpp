#include "Platform/x11/AtspiAccessibility.h"

#include "Platform/MainQueue.h"
#include "Platform/x11/AccessibilityLog.h"
#include "Platform/x11/AtspiWorker.h"
#include "Platform/x11/SessionBus.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QCoreApplication>

#include <coroutine>
#include <utility>
#include <vector>

namespace kestrova {

namespace {

/// Empty if there is none.
std::string sessionBusAddress() {
    // Without this the library would start one.
    if (!hasSessionBus())
        return {};
    GError* error = nullptr;
    char* const address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!address) {
        qCWarning(lcAccessibility, "[Accessibility] No session bus: %s", error->message);
        g_error_free(error);
        return {};
    }
    std::string result(address);
    g_free(address);
    return result;
}

} // namespace

/// A frame that waits for what becomes of its request.
struct AtspiAccessibility::Pending {
    std::shared_ptr<AtspiRequest> request;
    ScheduledBlock limit;
    std::coroutine_handle<> frame;
    std::optional<bool> result;
};

/// The frames that wait. Blocks on their way to the main thread hold it weakly.
struct AtspiAccessibility::Waiting {
    // Owned by the frames: one that is destroyed is not resumed any more.
    std::vector<std::weak_ptr<Pending>> frames;

    /// Takes out the frame that waits for the request, if there still is one.
    std::shared_ptr<Pending> take(const AtspiRequest& request) {
        std::shared_ptr<Pending> taken;
        std::erase_if(frames, [&](const auto& each) {
            const auto pending = each.lock();
            if (pending && pending->request.get() == &request)
                taken = pending;
            return !pending || pending == taken;
        });
        return taken;
    }

    void settle(const AtspiRequest& request, bool result) {
        if (const auto pending = take(request)) {
            pending->limit.cancel();
            pending->result = result;
            pending->frame.resume();
        }
    }
};

/// What `co_await` on a request waits for.
class AtspiAccessibility::Answer {
public:
    Answer(AtspiAccessibility& accessibility, std::shared_ptr<Pending> pending)
        : m_accessibility(&accessibility), m_pending(std::move(pending)) {}

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> frame) {
        m_pending->frame = frame;
        m_accessibility->begin(m_pending);
    }
    bool await_resume() const {
        if (!m_pending->result)
            throw MainQueueClosed{};
        return *m_pending->result;
    }

private:
    AtspiAccessibility* m_accessibility;
    std::shared_ptr<Pending> m_pending;
};

void AtspiAccessibility::begin(const std::shared_ptr<Pending>& pending) {
    const auto& request = pending->request;
    m_waiting->frames.push_back(pending);
    m_worker->submit(request,
                     [&queue = m_mainQueue, waiting = std::weak_ptr(m_waiting), request](bool result) {
                         queue.postFromAnyThread([waiting, request, result] {
                             if (const auto frames = waiting.lock())
                                 frames->settle(*request, result);
                         });
                     });
    // The worker keeps to its deadlines, but it may still be at another request.
    pending->limit = m_mainQueue.afterUnlessCancelled(AtspiRequest::timeToRead, [this, request] {
        if (request->giveUp())
            m_waiting->settle(*request, false);
    });
}

AtspiAccessibility::AtspiAccessibility(MainQueue& mainQueue)
    : m_mainQueue(mainQueue), m_waiting(std::make_shared<Waiting>()) {
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection);
    if (auto address = sessionBusAddress(); !address.empty())
        m_worker = std::make_unique<AtspiWorker>(std::move(address));
}

AtspiAccessibility::~AtspiAccessibility() {
    m_worker.reset();
    // One at a time: a frame that unwinds may let go of others.
    while (!m_waiting->frames.empty()) {
        const auto pending = m_waiting->frames.back().lock();
        m_waiting->frames.pop_back();
        if (pending) {
            pending->limit.cancel();
            pending->frame.resume();
        }
    }
}

bool AtspiAccessibility::isTrusted() const {
    return m_worker && m_worker->isConnected();
}

QCoro::Task<bool> AtspiAccessibility::setSelectedText(RunningApplication application, QString text) {
    if (!isTrusted() || application.processIdentifier == 0 ||
        application.processIdentifier == QCoreApplication::applicationPid() || text.size() > longestText ||
        text.contains(QChar::Null))
        co_return false;
    auto title = m_windows ? m_windows->title(application.window) : QString();
    auto pending = std::make_shared<Pending>();
    pending->request =
        std::make_shared<AtspiRequest>(application.processIdentifier, std::move(title), std::move(text));
    co_return co_await Answer(*this, std::move(pending));
}

} // namespace kestrova
