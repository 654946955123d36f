#include "Platform/x11/PortalAppearance.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>

#include <utility>

namespace kestrova {
namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");
// Older portals know no other question. Newer ones call it outdated, but answer it, wrapped twice.
const QString read = QStringLiteral("Read");

QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<Appearance::ColorScheme> colorSchemeOf(const QVariant& value) {
    // Any other number stands for no preference.
    constexpr uint dark = 1;
    constexpr uint light = 2;
    bool isNumber = false;
    const auto number = unwrapped(value).toUInt(&isNumber);
    if (isNumber && number == dark)
        return Appearance::ColorScheme::dark;
    if (isNumber && number == light)
        return Appearance::ColorScheme::light;
    return std::nullopt;
}

} // namespace

PortalAppearance::PortalAppearance(MainQueue& mainQueue)
    // A portal may have to be started for the answer; whoever waits for this program comes first.
    : m_start(mainQueue.afterUnlessCancelled({}, [this] { follow(); })) {}

void PortalAppearance::follow() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto* const watcher =
        new QDBusServiceWatcher(portal, bus, QDBusServiceWatcher::WatchForOwnerChange, &m_bus);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, &m_bus, [this] { ask(); });
    QObject::connect(watcher, &QDBusServiceWatcher::serviceUnregistered, &m_bus, [this] {
        // What it said last stands until another one comes, so that a restart is not seen.
        ++m_question;
    });
    // The bus calls a slot by its name; the timer has one that fits. Whoever sends this, the portal is asked.
    auto* const changed = new QTimer(&m_bus);
    changed->setSingleShot(true);
    QObject::connect(changed, &QTimer::timeout, &m_bus, [this] { ask(); });
    bus.connect(QString(), path, settings, QStringLiteral("SettingChanged"), {appearance, key}, QString(),
                changed, SLOT(start()));
    // After that, so that no change comes between the two.
    ask();
}

void PortalAppearance::ask() {
    auto question = QDBusMessage::createMethodCall(portal, path, settings, read);
    question.setArguments({appearance, key});
    auto* const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), &m_bus);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &m_bus,
                     [this, asked = ++m_question](QDBusPendingCallWatcher* call) {
                         call->deleteLater();
                         if (asked == m_question)
                             onAnswer(call->reply());
                     });
}

void PortalAppearance::onAnswer(const QDBusMessage& answer) {
    if (answer.type() == QDBusMessage::ReplyMessage)
        return settle(colorSchemeOf(answer.arguments().value(0)));
    // One that does not answer in time says nothing anew; what it said last stands.
    const auto error = QDBusError(answer).type();
    if (error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut)
        return;
    // Nobody there, or a portal without such a setting: then the desktop does not say.
    settle(std::nullopt);
}

void PortalAppearance::settle(std::optional<ColorScheme> colorScheme) {
    if (std::exchange(m_colorScheme, colorScheme) != colorScheme && onChange)
        onChange();
}

} // namespace kestrova
