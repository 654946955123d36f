#include "bench/SocketRequest.h"

#include <QDataStream>
#include <QDeadlineTimer>
#include <QLocalSocket>

#include <stdexcept>
#include <thread>

namespace kestrova::bench {
namespace {

using namespace std::chrono_literals;

constexpr auto deadlineForAnswer = 60s;
// The error of every figure that begins before somebody listens; short beside them, long enough to leave the
// processor to the program.
constexpr auto pauseBetweenAttempts = 200us;

} // namespace

QByteArray request(const QString& socketFile, const QStringList& arguments) {
    const QDeadlineTimer deadline(deadlineForAnswer);
    QLocalSocket socket;
    for (;;) {
        socket.connectToServer(socketFile);
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
            break;
        if (deadline.hasExpired())
            throw std::runtime_error("nobody listens at " + socketFile.toStdString());
        std::this_thread::sleep_for(pauseBetweenAttempts);
    }
    QDataStream stream(&socket);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << arguments;
    // An answer is preceded by its size.
    const auto waitFor = [&](quint64 size) {
        while (static_cast<quint64>(socket.bytesAvailable()) < size)
            if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
                throw std::runtime_error("no answer from " + socketFile.toStdString());
    };
    quint64 size = 0;
    waitFor(sizeof size);
    stream >> size;
    waitFor(size);
    qint32 exitStatus = 0;
    QByteArray output;
    QByteArray errors;
    stream >> exitStatus >> output >> errors;
    if (exitStatus != 0)
        throw std::runtime_error("refused: " + errors.toStdString());
    return output;
}

} // namespace kestrova::bench
