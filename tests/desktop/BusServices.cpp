#include "tests/desktop/BusServices.h"

#include <QDBusVariant>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString accessibilityName = u"org.a11y.Bus"_s;
const QString accessibilityPath = u"/org/a11y/bus"_s;
const QString failure = u"org.freedesktop.DBus.Error.Failed"_s;

} // namespace

BusServices::BusServices() {
    m_bus.registerVirtualObject(watcherPath, &m_watcher);
    m_bus.registerVirtualObject(accessibilityPath, &m_accessibility);
}

BusServices::~BusServices() {
    m_bus.unregisterObject(watcherPath);
    m_bus.unregisterObject(accessibilityPath);
}

void BusServices::watchNotifiers(const QString& state) {
    const bool comes = m_notifierState == u"0" && state == u"1";
    m_notifierState = state;
    m_bus.registerService(watcherName);
    if (comes)
        m_bus.send(QDBusMessage::createSignal(watcherPath, watcherName, u"StatusNotifierHostRegistered"_s));
}

void BusServices::refuseAccessibilityOnce() {
    m_bus.registerService(accessibilityName);
}

QDBusMessage BusServices::answerOfWatcher(const QDBusMessage& question) const {
    if (m_notifierState != u"0" && m_notifierState != u"1")
        return question.createErrorReply(failure, u"not ready"_s);
    return question.createReply(QVariant::fromValue(QDBusVariant(m_notifierState == u"1")));
}

QDBusMessage BusServices::answerOfAccessibility(const QDBusMessage& question) {
    const QString asker = question.service();
    if (!m_refused.contains(asker)) {
        m_refused.insert(asker);
        return question.createErrorReply(failure, u"not ready"_s);
    }
    return question.createReply(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
}

} // namespace kestrova::test
