#include "tests/desktop/AssistiveProgram.h"

#include <QDBusMessage>
#include <QStringList>

#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

const QString kLookUp = u"assistive program, look-up"_s;
const QString kName = u"assistive program"_s;

} // namespace

QString AssistiveProgram::accessibilityBus(const QString& sessionBus) {
    QDBusMessage answer;
    {
        const QDBusConnection bus = QDBusConnection::connectToBus(sessionBus, kLookUp);
        answer = bus.call(QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s,
                                                         u"org.a11y.Bus"_s, u"GetAddress"_s));
    }
    QDBusConnection::disconnectFromBus(kLookUp);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error("no accessibility bus: " + answer.errorMessage().toStdString());
    return answer.arguments().value(0).toString();
}

AssistiveProgram::AssistiveProgram(const QString& sessionBus)
    : m_bus(QDBusConnection::connectToBus(accessibilityBus(sessionBus), kName)) {
    QDBusMessage wish =
        QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s,
                                       u"org.a11y.atspi.Registry"_s, u"RegisterEvent"_s);
    wish.setArguments({u"object:state-changed:focused"_s, QStringList(), QString()});
    const QDBusMessage answer = m_bus.call(wish);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error("no accessible programs: " + answer.errorMessage().toStdString());
}

AssistiveProgram::~AssistiveProgram() {
    QDBusConnection::disconnectFromBus(kName);
}

} // namespace kestrova::test
