#include "Platform/x11/LinuxSingleInstance.h"

#include "Platform/x11/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLoggingCategory>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcInstance, "kestrova.instance")

// D-Bus ends a connection that sends an array of more than 64 MiB.
constexpr qsizetype largestBusReply = qsizetype{60} * 1024 * 1024;

} // namespace

/// The object on the session bus.
class LinuxSingleInstance::BusObject final : public QDBusVirtualObject {
public:
    explicit BusObject(const LinuxSingleInstance& instance) : m_instance(instance) {}

    QString introspect(const QString&) const override {
        return QStringLiteral("<interface name=\"%1\"><method name=\"%2\">"
                              "<arg name=\"arguments\" type=\"as\" direction=\"in\"/>"
                              "<arg name=\"exitStatus\" type=\"i\" direction=\"out\"/>"
                              "<arg name=\"standardOutput\" type=\"ay\" direction=\"out\"/>"
                              "<arg name=\"standardError\" type=\"ay\" direction=\"out\"/>"
                              "</method></interface>")
            .arg(InstanceBus::interface, InstanceBus::method);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != InstanceBus::method || message.signature() != u"as")
            return false;
        const auto reply = m_instance.onCommand(message.arguments().constFirst().toStringList());
        if (reply.standardOutput.size() + reply.standardError.size() > largestBusReply)
            return connection.send(message.createErrorReply(
                InstanceBus::tooLarge, QStringLiteral("The answer is too large for the bus.")));
        return connection.send(
            message.createReply({reply.exitStatus, reply.standardOutput, reply.standardError}));
    }

private:
    const LinuxSingleInstance& m_instance;
};

LinuxSingleInstance::LinuxSingleInstance(const QString& dataDirectory) : m_files(dataDirectory) {
    if (QDir().mkpath(dataDirectory))
        QFile::setPermissions(dataDirectory,
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

LinuxSingleInstance::~LinuxSingleInstance() {
    if (m_busObject) {
        QDBusConnection::sessionBus().unregisterService(InstanceBus::service);
        QDBusConnection::sessionBus().unregisterObject(InstanceBus::path);
    }
    if (m_lock >= 0)
        close(m_lock);
}

bool LinuxSingleInstance::claim() {
    m_lock =
        open(QFile::encodeName(m_files.lock).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (m_lock < 0) {
        // Without the file nothing can tell two instances apart; the store still keeps their rows from
        // mixing.
        qCWarning(lcInstance).noquote() << "[Instance] cannot open" << m_files.lock;
        return true;
    }
    // A lock of the open file, not of the process: it can be asked for without being taken, so that whoever
    // looks for the instance never stands in its way. It goes when the process does.
    struct flock wanted {};
    wanted.l_type = F_WRLCK;
    wanted.l_whence = SEEK_SET;
    if (fcntl(m_lock, F_OFD_SETLK, &wanted) != 0) {
        if (errno == EAGAIN || errno == EACCES)
            return false;
        qCWarning(lcInstance).noquote() << "[Instance] cannot lock" << m_files.lock;
    }
    const auto pid = QByteArray::number(QCoreApplication::applicationPid());
    if (ftruncate(m_lock, 0) != 0 ||
        pwrite(m_lock, pid.constData(), static_cast<size_t>(pid.size()), 0) != pid.size())
        qCWarning(lcInstance).noquote() << "[Instance] cannot write" << m_files.lock;
    return true;
}

void LinuxSingleInstance::serve() {
    serveSocket();
    if (hasSessionBus())
        serveBus();
}

void LinuxSingleInstance::serveSocket() {
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    // What an instance that was killed left behind; the lock says that nobody listens there.
    QLocalServer::removeServer(m_files.socket);
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(), [this] {
        while (auto* const socket = m_server->nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] { answer(*socket); });
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    if (!m_server->listen(m_files.socket))
        qCWarning(lcInstance).noquote()
            << "[Instance] cannot listen at" << m_files.socket << "-" << m_server->errorString();
}

void LinuxSingleInstance::answer(QLocalSocket& socket) {
    QDataStream stream(&socket);
    stream.setVersion(QDataStream::Qt_6_4);
    QStringList arguments;
    stream.startTransaction();
    stream >> arguments;
    if (!stream.commitTransaction())
        return;
    const auto reply = onCommand(arguments);
    QByteArray answer;
    QDataStream packed(&answer, QIODevice::WriteOnly);
    packed.setVersion(stream.version());
    packed << qint32{reply.exitStatus} << reply.standardOutput << reply.standardError;
    // Its size first: the client can then wait for the whole of it.
    stream << static_cast<quint64>(answer.size());
    socket.write(answer);
    // A quit may be all that follows.
    socket.flush();
    socket.disconnectFromServer();
}

void LinuxSingleInstance::serveBus() {
    auto bus = QDBusConnection::sessionBus();
    m_busObject = std::make_unique<BusObject>(*this);
    if (!bus.isConnected() || !bus.registerVirtualObject(InstanceBus::path, m_busObject.get()) ||
        !bus.registerService(InstanceBus::service)) {
        qCWarning(lcInstance).noquote() << "[Instance] not on the session bus -" << bus.lastError().message();
    }
}

} // namespace kestrova
