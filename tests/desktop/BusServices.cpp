#include "tests/desktop/BusServices.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>

#include <utility>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString portalName = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString settingsName = u"org.freedesktop.portal.Settings"_s;
const QString appearanceName = u"org.freedesktop.appearance"_s;
const QString colorSchemeKey = u"color-scheme"_s;
const QString fileManagerName = u"org.freedesktop.FileManager1"_s;
const QString fileManagerPath = u"/org/freedesktop/FileManager1"_s;
const QString accessibilityName = u"org.a11y.Bus"_s;
const QString accessibilityPath = u"/org/a11y/bus"_s;
const QString failure = u"org.freedesktop.DBus.Error.Failed"_s;

} // namespace

BusServices::BusServices() {
    m_bus.registerVirtualObject(watcherPath, &m_watcher);
    m_bus.registerVirtualObject(portalPath, &m_portal);
    m_bus.registerVirtualObject(fileManagerPath, &m_fileManager);
    m_bus.registerVirtualObject(accessibilityPath, &m_accessibility);
}

BusServices::~BusServices() {
    m_bus.unregisterObject(watcherPath);
    m_bus.unregisterObject(portalPath);
    m_bus.unregisterObject(fileManagerPath);
    m_bus.unregisterObject(accessibilityPath);
    m_bus.unregisterObject(m_applicationPath);
}

void BusServices::watchNotifiers(const QString& state) {
    const bool comes = m_notifierState == u"0" && state == u"1";
    m_notifierState = state;
    m_bus.registerService(watcherName);
    if (comes)
        m_bus.send(QDBusMessage::createSignal(watcherPath, watcherName, u"StatusNotifierHostRegistered"_s));
}

void BusServices::offerSettings(const QString& state) {
    const bool isNew = !m_bus.interface()->isServiceRegistered(portalName);
    const bool isOther = std::exchange(m_colorScheme, state) != state;
    m_bus.registerService(portalName);
    bool isNumber = false;
    const uint number = state.toUInt(&isNumber);
    if (isNew || !isOther || !isNumber)
        return;
    auto change = QDBusMessage::createSignal(portalPath, settingsName, u"SettingChanged"_s);
    change.setArguments({appearanceName, colorSchemeKey, QVariant::fromValue(QDBusVariant(number))});
    m_bus.send(change);
}

void BusServices::withdrawSettings() {
    m_bus.unregisterService(portalName);
}

void BusServices::manageFiles() {
    m_bus.registerService(fileManagerName);
}

QDBusMessage BusServices::answerOfFileManager(const QDBusMessage& question) {
    const auto words = question.arguments();
    if (question.member() != u"ShowItems" || words.size() != 2)
        return question.createErrorReply(failure, u"no such method"_s);
    m_shownFiles = (words[0].toStringList() << words[1].toString()).join(u' ');
    return question.createReply();
}

void BusServices::beApplication(const QString& name) {
    m_applicationPath = u'/' + QString(name).replace(u'.', u'/').replace(u'-', u'_');
    m_bus.registerVirtualObject(m_applicationPath, &m_application);
    m_bus.registerService(name);
}

QDBusMessage BusServices::answerOfApplication(const QDBusMessage& question) {
    const auto words = question.arguments();
    if (question.interface() != u"org.freedesktop.Application" || question.member() != u"Open" ||
        question.signature() != u"asa{sv}")
        return question.createErrorReply(failure, u"no such method"_s);
    const auto platformData = qdbus_cast<QVariantMap>(words[1]);
    m_openedFiles = (words[0].toStringList() << platformData[u"desktop-startup-id"_s].toString()).join(u' ');
    return question.createReply();
}

void BusServices::refuseAccessibilityOnce() {
    m_bus.registerService(accessibilityName);
}

QDBusMessage BusServices::answerOfWatcher(const QDBusMessage& question) const {
    if (m_notifierState != u"0" && m_notifierState != u"1")
        return question.createErrorReply(failure, u"not ready"_s);
    return question.createReply(QVariant::fromValue(QDBusVariant(m_notifierState == u"1")));
}

QDBusMessage BusServices::answerOfPortal(const QDBusMessage& question) const {
    if (m_colorScheme == u"silent")
        return {};
    bool isNumber = false;
    const uint number = m_colorScheme.toUInt(&isNumber);
    const bool isAskedFor = question.interface() == settingsName && question.member() == u"Read" &&
                            question.arguments() == QVariantList{appearanceName, colorSchemeKey};
    if (!isNumber || !isAskedFor)
        return question.createErrorReply(failure, u"no such setting"_s);
    // As the portals of this desktop do: a value in a value.
    const auto value = QVariant::fromValue(QDBusVariant(number));
    return question.createReply(QVariant::fromValue(QDBusVariant(value)));
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
