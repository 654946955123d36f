#include "Platform/x11/AtspiWorker.h"

#include "Platform/x11/AccessibilityLog.h"
#include "Platform/x11/FocusedElement.h"

#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

// Nobody waits for these.
constexpr auto timeToConnect = 5s;
constexpr auto untilRetry = 2s;

constexpr const char* launcher = "org.a11y.Bus";
constexpr const char* registry = "org.a11y.atspi.Registry";

GObjectPointer<GDBusConnection> openBus(const std::string& address, GCancellable* cancellable) {
    GError* error = nullptr;
    GObjectPointer<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, cancellable, &error));
    if (!connection) {
        if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            qCWarning(lcAccessibility, "[Accessibility] A bus cannot be reached: %s", error->message);
        g_error_free(error);
    }
    return connection;
}

/// The second argument of an event: for a state, whether it is on now. Absent in a malformed event.
std::optional<bool> stateInEvent(GVariant* arguments) {
    if (g_variant_n_children(arguments) < 2)
        return {};
    const GVariantPointer detail(g_variant_get_child_value(arguments, 1));
    if (!g_variant_is_of_type(detail.get(), G_VARIANT_TYPE_INT32))
        return {};
    return g_variant_get_int32(detail.get()) != 0;
}

} // namespace

AtspiWorker::AtspiWorker(std::string sessionBusAddress)
    : m_sessionBusAddress(std::move(sessionBusAddress)), m_thread([this] { run(); }) {}

AtspiWorker::~AtspiWorker() {
    g_cancellable_cancel(m_cancellable.get());
    // As a block: the loop may not run yet, and quitting it would then be forgotten.
    post([loop = m_loop.get()] { g_main_loop_quit(loop); });
    m_thread.join();
}

void AtspiWorker::post(std::function<void()> block) {
    GSource* const source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](void* data) -> gboolean {
            (*static_cast<std::function<void()>*>(data))();
            return G_SOURCE_REMOVE;
        },
        new std::function<void()>(std::move(block)),
        [](void* data) { delete static_cast<std::function<void()>*>(data); });
    g_source_attach(source, m_context.get());
    g_source_unref(source);
}

void AtspiWorker::run() {
    g_main_context_push_thread_default(m_context.get());
    unsigned watch = 0;
    if (auto connection = openBus(m_sessionBusAddress, m_cancellable.get())) {
        m_session.emplace(std::move(connection), m_cancellable.get());
        watch = g_bus_watch_name_on_connection(
            m_session->get(), launcher, G_BUS_NAME_WATCHER_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, void* self) {
                static_cast<AtspiWorker*>(self)->connect();
            },
            [](GDBusConnection*, const char*, void* self) { static_cast<AtspiWorker*>(self)->disconnect(); },
            this, nullptr);
    }
    g_main_loop_run(m_loop.get());
    if (watch != 0)
        g_bus_unwatch_name(watch);
    disconnect();
    m_session.reset();
    // What was posted and has not run holds references of its own to let go.
    while (g_main_context_iteration(m_context.get(), FALSE)) {
    }
    g_main_context_pop_thread_default(m_context.get());
}

void AtspiWorker::connect() {
    if (!tryToConnect())
        connectLater();
}

void AtspiWorker::connectLater() {
    // A service that has just come may not be ready yet.
    m_retry.reset(g_timeout_source_new(static_cast<unsigned>(std::chrono::milliseconds{untilRetry}.count())));
    g_source_set_callback(
        m_retry.get(),
        [](void* data) -> gboolean {
            auto& self = *static_cast<AtspiWorker*>(data);
            self.m_retry.reset();
            if (!self.tryToConnect())
                qCWarning(lcAccessibility, "[Accessibility] The accessibility service gives no bus");
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(m_retry.get(), m_context.get());
}

bool AtspiWorker::tryToConnect() {
    const auto answer = m_session->call({launcher, "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress", nullptr,
                                        "(s)", AtspiBus::Clock::now() + timeToConnect);
    if (!answer.value)
        return false;
    const char* address = nullptr;
    g_variant_get(answer.value.get(), "(&s)", &address);
    auto connection = openBus(address, m_cancellable.get());
    if (!connection)
        return false;
    m_bus.emplace(std::move(connection), m_cancellable.get());
    listen();
    m_isConnected = true;
    return true;
}

void AtspiWorker::listen() {
    g_signal_connect(m_bus->get(), "closed", G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, void* self) {
                         static_cast<AtspiWorker*>(self)->disconnect();
                     }),
                     this);
    m_focusEvents = g_dbus_connection_signal_subscribe(
        m_bus->get(), nullptr, "org.a11y.atspi.Event.Object", "StateChanged", nullptr, "focused",
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char* sender, const char* path, const char*, const char*,
           GVariant* arguments, void* self) {
            auto& memory = static_cast<AtspiWorker*>(self)->m_memory;
            if (const auto isFocused = stateInEvent(arguments))
                *isFocused ? memory.gained({sender, path}) : memory.lost({sender, path});
        },
        this, nullptr);
    m_registryWatch = g_bus_watch_name_on_connection(
        m_bus->get(), registry, G_BUS_NAME_WATCHER_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, void* self) {
            static_cast<AtspiWorker*>(self)->askForEvents();
        },
        nullptr, this, nullptr);
}

void AtspiWorker::askForEvents() {
    // Applications say nothing of their focus before someone asks for it.
    const auto answer = m_bus->call({registry, "/org/a11y/atspi/registry"}, registry, "RegisterEvent",
                                    g_variant_new("(sass)", "object:state-changed:focused", nullptr, ""),
                                    "()", AtspiBus::Clock::now() + timeToConnect);
    if (!answer.value)
        qCWarning(lcAccessibility, "[Accessibility] Applications will not tell where their focus is");
}

void AtspiWorker::disconnect() {
    m_isConnected = false;
    m_memory.clear();
    m_retry.reset();
    if (!m_bus)
        return;
    // This may be called from within its own signal.
    const GObjectPointer<GDBusConnection> connection(
        static_cast<GDBusConnection*>(g_object_ref(m_bus->get())));
    g_signal_handlers_disconnect_by_data(connection.get(), this);
    g_dbus_connection_signal_unsubscribe(connection.get(), m_focusEvents);
    g_bus_unwatch_name(m_registryWatch);
    m_bus.reset();
    g_dbus_connection_close(connection.get(), nullptr, nullptr, nullptr);
}

void AtspiWorker::submit(std::shared_ptr<AtspiRequest> request, Answer answer) {
    post([this, request = std::move(request), answer = std::move(answer)] { answer(carryOut(*request)); });
}

bool AtspiWorker::carryOut(AtspiRequest& request) {
    if (!m_bus)
        return false;
    const auto focused = focusedElement(*m_bus, m_memory, request.processIdentifier(), request.windowTitle(),
                                        request.readDeadline());
    auto element = focused ? AtspiElement::editable(*focused) : std::nullopt;
    if (!element)
        return false;
    return replaceSelection(*element, request.text(), [&request, &element] {
        element->setDeadline(request.writeDeadline());
        return request.beginWriting();
    });
}

} // namespace kestrova
