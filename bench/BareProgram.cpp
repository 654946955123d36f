#include <QApplication>
#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

/// The floor for a program of this toolkit: it does nothing but answer one request at the socket that its
/// argument names. Nothing of Kestrova is linked into it.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc < 2)
        return 2;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    if (argc > 2)
        timer.start(QByteArray(argv[2]).toInt());
    QLocalServer server;
    QObject::connect(&server, &QLocalServer::newConnection, &server, [&server] {
        auto* const socket = server.nextPendingConnection();
        QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket] {
            socket->readAll();
            QByteArray answer;
            QDataStream(&answer, QIODevice::WriteOnly) << qint32{0} << QByteArray("ready") << QByteArray();
            QDataStream(socket) << static_cast<quint64>(answer.size());
            socket->write(answer);
            socket->flush();
            socket->disconnectFromServer();
        });
    });
    QLocalServer::removeServer(QString::fromLocal8Bit(argv[1]));
    return server.listen(QString::fromLocal8Bit(argv[1])) ? QApplication::exec() : 1;
}
