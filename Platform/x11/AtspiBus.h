#pragma once

#include "Platform/x11/FocusMemory.h"

#include <gio/gio.h>

#include <chrono>
#include <memory>

namespace kestrova {

struct GVariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using GVariantPointer = std::unique_ptr<GVariant, GVariantUnref>;

struct GObjectUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
template<typename T>
using GObjectPointer = std::unique_ptr<T, GObjectUnref>;

/// Calls to one bus that wait for their answer, on a thread that may wait.
class AtspiBus {
public:
    using Clock = std::chrono::steady_clock;

    struct Answer {
        /// Null if there is none.
        GVariantPointer value;
        /// The other side may still carry the call out.
        bool isSilent = false;
    };

    /// `cancellable` ends calls under way, from any thread; it outlives the object.
    AtspiBus(GObjectPointer<GDBusConnection> connection, GCancellable* cancellable);

    /// `arguments` is floating and consumed. An answer of another type than `answerType` counts as none. A
    /// program that is not there is not started.
    Answer call(const AtspiReference& object, const char* interface, const char* method, GVariant* arguments,
                const char* answerType, Clock::time_point deadline) const;
    /// The value of a property; null if there is none of that type.
    GVariantPointer property(const AtspiReference& object, const char* interface, const char* name,
                             const char* type, Clock::time_point deadline) const;
    /// 0 if the connection has gone.
    std::uint32_t processIdentifier(const QByteArray& connection, Clock::time_point deadline) const;

    GDBusConnection* get() const { return m_connection.get(); }

private:
    GObjectPointer<GDBusConnection> m_connection;
    GCancellable* m_cancellable;
};

} // namespace kestrova
