#include "Platform/x11/AtspiBus.h"

#include <algorithm>
#include <utility>

namespace kestrova {

AtspiBus::AtspiBus(GObjectPointer<GDBusConnection> connection, GCancellable* cancellable)
    : m_connection(std::move(connection)), m_cancellable(cancellable) {}

AtspiBus::Answer AtspiBus::call(const AtspiReference& object, const char* interface, const char* method,
                                GVariant* arguments, const char* answerType,
                                Clock::time_point deadline) const {
    const GVariantPointer owned(g_variant_ref_sink(arguments ? arguments : g_variant_new("()")));
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // Not sent at all, so that the other side cannot carry it out either.
    if (left <= 0)
        return {};
    GError* error = nullptr;
    GVariantPointer value(g_dbus_connection_call_sync(m_connection.get(), object.connection.constData(),
                                                      object.path.constData(), interface, method, owned.get(),
                                                      nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                                      static_cast<int>(left), m_cancellable, &error));
    if (!value) {
        const bool isSilent = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
                              g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
                              g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
        g_error_free(error);
        return {.value = nullptr, .isSilent = isSilent};
    }
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE(answerType)))
        return {};
    return {.value = std::move(value)};
}

GVariantPointer AtspiBus::property(const AtspiReference& object, const char* interface, const char* name,
                                   const char* type, Clock::time_point deadline) const {
    const auto answer = call(object, "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", interface, name), "(v)", deadline);
    if (!answer.value)
        return nullptr;
    GVariant* inner = nullptr;
    g_variant_get(answer.value.get(), "(v)", &inner);
    GVariantPointer value(inner);
    return g_variant_is_of_type(inner, G_VARIANT_TYPE(type)) ? std::move(value) : nullptr;
}

std::uint32_t AtspiBus::processIdentifier(const QByteArray& connection, Clock::time_point deadline) const {
    const auto answer =
        call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
             "GetConnectionUnixProcessID", g_variant_new("(s)", connection.constData()), "(u)", deadline);
    std::uint32_t process = 0;
    if (answer.value)
        g_variant_get(answer.value.get(), "(u)", &process);
    return process;
}

} // namespace kestrova
