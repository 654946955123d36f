#include "Platform/x11/InstanceClient.h"

#include "Platform/x11/InstanceFiles.h"
#include "Platform/x11/SessionBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QThread>

#include <fcntl.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

// Long enough for a start that waits for a busy store, short enough for a person at a terminal.
constexpr auto startDeadline = 15s;

CommandReply noAnswer() {
    return {1, {}, "kestrova: the running program does not answer\n"};
}

/// Waits until `size` bytes can be read; false if they do not come.
bool arrives(QLocalSocket& socket, quint64 size, const QDeadlineTimer& deadline) {
    const auto isThere = [&] { return static_cast<quint64>(socket.bytesAvailable()) >= size; };
    while (!isThere())
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return isThere();
    return true;
}

std::int64_t lockHolder(const QString& lockFile) {
    QFile file(lockFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toLongLong() : 0;
}

} // namespace

bool InstanceClient::isRunning() const {
    const int lock =
        open(QFile::encodeName(InstanceFiles(m_dataDirectory).lock).constData(), O_RDONLY | O_CLOEXEC);
    if (lock < 0)
        return false;
    struct flock asked {};
    asked.l_type = F_WRLCK;
    asked.l_whence = SEEK_SET;
    const bool isHeld = fcntl(lock, F_OFD_GETLK, &asked) == 0 && asked.l_type != F_UNLCK;
    close(lock);
    return isHeld;
}

std::optional<CommandReply> InstanceClient::send(const QStringList& arguments) const {
    for (const QDeadlineTimer deadline(startDeadline); isRunning() && !deadline.hasExpired();) {
        if (auto reply = sendByBus(arguments))
            return reply;
        if (auto reply = sendBySocket(arguments))
            return reply;
        QThread::msleep(5);
    }
    return std::nullopt;
}

std::optional<CommandReply> InstanceClient::sendByBus(const QStringList& arguments) const {
    if (!hasSessionBus())
        return std::nullopt;
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    // The name may belong to an instance with another history.
    const QDBusReply<uint> owner = bus.interface()->servicePid(InstanceBus::service);
    if (!owner.isValid() || owner.value() != lockHolder(InstanceFiles(m_dataDirectory).lock))
        return std::nullopt;
    auto call = QDBusMessage::createMethodCall(InstanceBus::service, InstanceBus::path,
                                               InstanceBus::interface, InstanceBus::method);
    call.setArguments({arguments});
    const auto reply = bus.call(call, QDBus::Block, static_cast<int>(m_answerDeadline.count()));
    if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == u"iayay")
        return CommandReply{reply.arguments()[0].toInt(), reply.arguments()[1].toByteArray(),
                            reply.arguments()[2].toByteArray()};
    // Only what was surely not carried out may be sent again another way; an answer that is too large was a
    // reading.
    const QStringList notCarriedOut{QString(InstanceBus::tooLarge),
                                    QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"),
                                    QStringLiteral("org.freedesktop.DBus.Error.UnknownObject"),
                                    QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod")};
    if (notCarriedOut.contains(reply.errorName()))
        return std::nullopt;
    return noAnswer();
}

std::optional<CommandReply> InstanceClient::sendBySocket(const QStringList& arguments) const {
    QLocalSocket socket;
    socket.connectToServer(InstanceFiles(m_dataDirectory).socket);
    if (!socket.waitForConnected())
        return std::nullopt;
    QDataStream stream(&socket);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << arguments;
    const QDeadlineTimer deadline(m_answerDeadline);
    quint64 size = 0;
    if (!arrives(socket, sizeof size, deadline))
        return noAnswer();
    stream >> size;
    if (!arrives(socket, size, deadline))
        return noAnswer();
    qint32 exitStatus = 0;
    CommandReply reply;
    stream >> exitStatus >> reply.standardOutput >> reply.standardError;
    reply.exitStatus = exitStatus;
    return stream.status() == QDataStream::Ok ? reply : noAnswer();
}

} // namespace kestrova
