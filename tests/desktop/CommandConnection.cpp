#include "tests/desktop/CommandConnection.h"

#include "tests/desktop/Waiting.h"

#include <QDBusMessage>
#include <QJsonDocument>

#include <atomic>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

QString nextName() {
    static std::atomic<int> count = 0;
    return u"kestrova-test-%1"_s.arg(++count);
}

} // namespace

CommandConnection::CommandConnection(const QString& busAddress)
    : m_name(nextName()), m_bus(QDBusConnection::connectToBus(busAddress, m_name)) {}

CommandConnection::~CommandConnection() {
    QDBusConnection::disconnectFromBus(m_name);
}

std::optional<QByteArray> CommandConnection::run(const QStringList& arguments) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"com.brelvane.Kestrova"_s, u"/com/brelvane/Kestrova"_s,
                                       u"com.brelvane.Kestrova.CommandLine"_s, u"Run"_s);
    call << arguments;
    const QDBusMessage answer = m_bus.call(call, QDBus::Block, static_cast<int>(kGenerously.count()));
    const QList<QVariant> values = answer.arguments();
    if (answer.type() != QDBusMessage::ReplyMessage || values.size() != 3 || values[0].toInt() != 0)
        return std::nullopt;
    return values[1].toByteArray();
}

std::optional<QJsonArray> CommandConnection::rows(int limit) {
    const auto output = run({u"list"_s, u"--json"_s, u"--limit"_s, QString::number(limit)});
    if (!output)
        return std::nullopt;
    return QJsonDocument::fromJson(*output).array();
}

} // namespace kestrova::test
