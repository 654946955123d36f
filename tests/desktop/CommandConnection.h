#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace kestrova::test {

/// A standing connection to the running program's command line over the session bus, so that asking it costs
/// no process start. One thread at a time.
class CommandConnection {
public:
    explicit CommandConnection(const QString& busAddress);
    CommandConnection(const CommandConnection&) = delete;
    CommandConnection& operator=(const CommandConnection&) = delete;
    ~CommandConnection();

    /// The standard output of a command that succeeded; absent if the program did not answer or refused.
    std::optional<QByteArray> run(const QStringList& arguments);
    /// The rows that `list --json` tells, newest first; absent if the program did not answer.
    std::optional<QJsonArray> rows(int limit);

private:
    QString m_name;
    QDBusConnection m_bus;
};

} // namespace kestrova::test
