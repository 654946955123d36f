#include "Platform/x11/ActivationNotices.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QCoreApplication>

#include <utility>

namespace kestrova {

namespace {

// The list tells kinds apart; here is but one.
constexpr std::uint32_t activation = 1;

struct Observer final : ActivationObserver {
    explicit Observer(std::unique_ptr<EventMonitor> monitor) : token(std::move(monitor)) {}
    std::unique_ptr<EventMonitor> token;
};

} // namespace

ActivationNotices::ActivationNotices()
    : m_connection(toolkitConnection()), m_own(m_connection), m_observers([this](bool isEmpty) {
          if (!m_windows)
              return;
          if (isEmpty) {
              QCoreApplication::instance()->removeNativeEventFilter(this);
          } else {
              m_last = m_windows->activeWindow();
              QCoreApplication::instance()->installNativeEventFilter(this);
          }
      }) {
    if (!m_connection)
        return;
    m_windows.emplace(m_connection);
    m_activeWindowAtom = atomNamed(m_connection, "_NET_ACTIVE_WINDOW");
}

std::unique_ptr<ActivationObserver> ActivationNotices::observe(std::function<void()> onDidActivate) {
    return std::make_unique<Observer>(m_observers.add(activation, std::move(onDidActivate)));
}

bool ActivationNotices::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    // The toolkit watches the properties of the root window for itself.
    const auto& event = *static_cast<const xcb_property_notify_event_t*>(message);
    if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY && event.atom == m_activeWindowAtom)
        onActiveWindowSet();
    return false;
}

void ActivationNotices::onActiveWindowSet() {
    const auto window = m_windows->activeWindow();
    // Window managers set it anew without a change as well.
    if (std::exchange(m_last, window) == window || window == XCB_NONE || m_own.contains(window))
        return;
    m_observers.any(activation, [](const std::function<void()>& observer) {
        observer();
        return false;
    });
}

} // namespace kestrova
