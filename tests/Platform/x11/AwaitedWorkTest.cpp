#include "Platform/x11/AwaitedWork.h"
#include "tests/support/ManualMainQueue.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace kestrova {
namespace {

using Settle = AwaitedWork::Result<int>::Settle;

QCoro::Task<> await(AwaitedWork& work, MainQueue& queue, std::function<void(Settle)> submit,
                    std::vector<std::string>& seen) {
    try {
        auto result = work.result<int>(queue, std::move(submit));
        seen.push_back(std::to_string(co_await result));
    } catch (const std::runtime_error& error) {
        seen.push_back(error.what());
    } catch (const MainQueueClosed&) {
        seen.push_back("closed");
        throw;
    }
}

class AwaitedWorkTest : public ::testing::Test {
protected:
    void beginOne() {
        m_task = await(
            *work, queue, [this](Settle given) { settle = std::move(given); }, seen);
    }

    ManualMainQueue queue;
    std::unique_ptr<AwaitedWork> work = std::make_unique<AwaitedWork>();
    Settle settle;
    std::vector<std::string> seen;

private:
    QCoro::Task<> m_task;
};

TEST_F(AwaitedWorkTest, WhatAnotherThreadFindsComesOnTheMainThreadsNextTurn) {
    beginOne();
    std::thread([this] { settle([] { return 7; }); }).join();
    EXPECT_TRUE(seen.empty());
    queue.turn();
    EXPECT_EQ(seen, std::vector<std::string>{"7"});
}

TEST_F(AwaitedWorkTest, WhatAnotherThreadThrowsIsThrownWhereItIsAwaited) {
    beginOne();
    std::thread([this] { settle([]() -> int { throw std::runtime_error("no picture"); }); }).join();
    queue.turn();
    EXPECT_EQ(seen, std::vector<std::string>{"no picture"});
}

TEST_F(AwaitedWorkTest, FramesThatStillWaitAreUnwound) {
    beginOne();
    work.reset();
    EXPECT_EQ(seen, std::vector<std::string>{"closed"});
    settle([] { return 7; });
    queue.turn();
    EXPECT_EQ(seen.size(), 1U);
}

QCoro::Task<> awaitAgain(AwaitedWork& work, MainQueue& queue, std::vector<std::string>& seen) {
    const std::function<void(Settle)> drop = [](Settle) {};
    try {
        co_await await(work, queue, drop, seen);
    } catch (const MainQueueClosed&) {
        seen.push_back("again");
    }
    co_await await(work, queue, drop, seen);
}

TEST_F(AwaitedWorkTest, AFrameThatBeginsToWaitWhileOthersUnwindIsUnwoundAsWell) {
    const auto task = awaitAgain(*work, queue, seen);
    work->close();
    EXPECT_EQ(seen, (std::vector<std::string>{"closed", "again", "closed"}));
}

} // namespace
} // namespace kestrova
