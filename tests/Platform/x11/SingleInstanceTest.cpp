#include "Platform/x11/InstanceClient.h"
#include "Platform/x11/LinuxSingleInstance.h"

#include "tests/support/LogCapture.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace kestrova {
namespace {

class SingleInstanceTest : public testing::Test {
protected:
    // What is tested here is the way without a bus; the desktop tests go over one.
    SingleInstanceTest() {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
    }

    QString directory() const { return m_root.filePath(QStringLiteral("data")); }
    /// Sends from another thread, as another process would, while this one serves.
    std::optional<CommandReply> send(const QStringList& arguments,
                                     std::chrono::milliseconds answerDeadline = std::chrono::seconds{60}) {
        std::optional<CommandReply> reply;
        std::atomic<bool> done = false;
        std::thread client([&] {
            reply = InstanceClient(directory(), answerDeadline).send(arguments);
            done = true;
        });
        while (!done)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        client.join();
        return reply;
    }

    QTemporaryDir m_root;
};

TEST_F(SingleInstanceTest, OnlyTheFirstIsTheOneAndTheNextFollowsWhenItHasGone) {
    {
        LinuxSingleInstance first(directory());
        LinuxSingleInstance second(directory());
        EXPECT_FALSE(InstanceClient(directory()).isRunning());
        EXPECT_TRUE(first.claim());
        EXPECT_FALSE(second.claim());
        EXPECT_TRUE(InstanceClient(directory()).isRunning());
    }
    EXPECT_FALSE(InstanceClient(directory()).isRunning());
    LinuxSingleInstance third(directory());
    EXPECT_TRUE(third.claim());
}

TEST_F(SingleInstanceTest, CarriesArgumentsAndAnswersOfAnySizeAndContent) {
    LinuxSingleInstance instance(directory());
    ASSERT_TRUE(instance.claim());
    const CommandReply answer{7, QByteArray(30'000'000, '\0') + "end", "한 줄\n"};
    QStringList received;
    instance.onCommand = [&](const QStringList& arguments) {
        received = arguments;
        return answer;
    };
    instance.serve();
    const QStringList arguments{QStringLiteral("add"), QString(1'000'000, u'가'), QString()};
    EXPECT_EQ(send(arguments), answer);
    EXPECT_EQ(received, arguments);
}

TEST_F(SingleInstanceTest, ASocketThatAKilledInstanceLeftBehindIsTakenOver) {
    {
        LinuxSingleInstance probe(directory());
        QFile stale(directory() + QStringLiteral("/socket"));
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    }
    LinuxSingleInstance instance(directory());
    ASSERT_TRUE(instance.claim());
    instance.onCommand = [](const QStringList&) { return CommandReply{0, "here", {}}; };
    const LogCapture log;
    instance.serve();
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(send({QStringLiteral("status")})->standardOutput, "here");
}

TEST_F(SingleInstanceTest, WithoutAnInstanceThereIsNoAnswerAndNoWait) {
    EXPECT_EQ(InstanceClient(directory()).send({QStringLiteral("status")}), std::nullopt);
}

TEST_F(SingleInstanceTest, LookingForTheInstanceDoesNotStandInItsWay) {
    std::atomic<bool> done = false;
    {
        LinuxSingleInstance makesTheFolder(directory());
        ASSERT_TRUE(makesTheFolder.claim());
    }
    std::thread looking([&] {
        while (!done)
            InstanceClient(directory()).isRunning();
    });
    int refused = 0;
    for (int i = 0; i < 5'000; ++i) {
        LinuxSingleInstance instance(directory());
        refused += instance.claim() ? 0 : 1;
    }
    done = true;
    looking.join();
    EXPECT_EQ(refused, 0);
}

/// An instance that holds the lock but whose socket answers with `bytes` and then, if told so, closes.
struct BrokenInstance {
    BrokenInstance(const QString& directory, const QByteArray& bytes, bool closes) : lock(directory) {
        EXPECT_TRUE(lock.claim());
        EXPECT_TRUE(server.listen(directory + QStringLiteral("/socket")));
        QObject::connect(&server, &QLocalServer::newConnection, &server, [this, bytes, closes] {
            auto* const socket = server.nextPendingConnection();
            socket->write(bytes);
            socket->flush();
            if (closes)
                socket->disconnectFromServer();
        });
    }
    LinuxSingleInstance lock;
    QLocalServer server;
};

TEST_F(SingleInstanceTest, AnInstanceThatBreaksOffOrStaysSilentIsAnError) {
    for (const bool closes : {true, false})
        for (const auto& bytes :
             {QByteArray(), QByteArray(3, '\0'), QByteArray("\0\0\0\0\0\0\0\x40 part", 13)}) {
            const BrokenInstance broken(directory(), bytes, closes);
            const auto reply = send({QStringLiteral("status")}, std::chrono::milliseconds{200});
            ASSERT_TRUE(reply);
            EXPECT_EQ(reply->exitStatus, 1);
            EXPECT_TRUE(reply->standardError.contains("does not answer"));
        }
}

TEST_F(SingleInstanceTest, NobodyElseMayTalkToIt) {
    LinuxSingleInstance instance(directory());
    ASSERT_TRUE(instance.claim());
    instance.serve();
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    for (const auto& name : {QString(), QStringLiteral("/socket"), QStringLiteral("/instance.lock")})
        EXPECT_FALSE(QFile::permissions(directory() + name) & others) << name.toStdString();
}

} // namespace
} // namespace kestrova
