#include "tests/support/ManualMainQueue.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

TEST(MainQueueTest, RunsBlocksOnTheNextTurnInTheirOrder) {
    ManualMainQueue queue;
    std::string ran;
    queue.post([&] {
        ran += 'a';
        queue.post([&] { ran += 'c'; });
    });
    queue.post([&] { ran += 'b'; });
    EXPECT_EQ(ran, "");
    queue.turn();
    EXPECT_EQ(ran, "ab");
    queue.turn();
    EXPECT_EQ(ran, "abc");
}

TEST(MainQueueTest, RunsADelayedBlockAtItsMomentAndNotBefore) {
    ManualMainQueue queue;
    std::vector<std::chrono::milliseconds> moments;
    queue.after(80ms, [&] {
        moments.push_back(queue.now());
        queue.after(50ms, [&] { moments.push_back(queue.now()); });
    });
    queue.advance(79ms);
    EXPECT_TRUE(moments.empty());
    queue.advance(200ms);
    EXPECT_EQ(moments, (std::vector{80ms, 130ms}));
}

TEST(MainQueueTest, ARepeatingBlockRunsUntilItsTokenGoes) {
    ManualMainQueue queue;
    int ticks = 0;
    {
        const auto timer = queue.every(400ms, [&] { ++ticks; });
        queue.advance(399ms);
        EXPECT_EQ(ticks, 0);
        queue.advance(1s);
        EXPECT_EQ(ticks, 3);
    }
    queue.advance(1s);
    EXPECT_EQ(ticks, 3);
    EXPECT_TRUE(queue.isEmpty());
}

TEST(MainQueueTest, ABlockMayCancelItself) {
    ManualMainQueue queue;
    int ticks = 0;
    ScheduledBlock timer = queue.every(1ms, [&] {
        ++ticks;
        timer.cancel();
    });
    queue.advance(10ms);
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(timer);
}

TEST(MainQueueTest, ACancelledBlockDoesNotRunAndAMovedTokenStillOwnsIt) {
    ManualMainQueue queue;
    bool ran = false;
    auto token = queue.afterUnlessCancelled(5ms, [&] { ran = true; });
    ScheduledBlock other = std::move(token);
    EXPECT_FALSE(token); // NOLINT(bugprone-use-after-move): what is left is the point
    other.cancel();
    queue.advance(10ms);
    EXPECT_FALSE(ran);
}

QCoro::Task<> script(MainQueue& queue, std::string& log) {
    log += 'a';
    co_await queue.nextTurn();
    log += 'b';
    co_await queue.delay(50ms);
    log += 'c';
}

TEST(MainQueueTest, AwaitablesGoOnAtTheNextTurnAndAfterADelay) {
    ManualMainQueue queue;
    std::string log;
    script(queue, log);
    EXPECT_EQ(log, "a");
    queue.turn();
    EXPECT_EQ(log, "ab");
    queue.advance(49ms);
    EXPECT_EQ(log, "ab");
    queue.advance(1ms);
    EXPECT_EQ(log, "abc");
}

QCoro::Task<> awaitSignal(MainQueue& queue, std::optional<MainQueue::Continuation>& signal,
                          std::shared_ptr<std::string> log) {
    *log += 'a';
    co_await queue.suspension([&](MainQueue::Continuation continuation) {
        *log += 'b';
        signal = continuation;
    });
    *log += 'c';
}

TEST(MainQueueTest, ASuspendedFrameGoesOnATurnAfterItWasResumed) {
    ManualMainQueue queue;
    std::optional<MainQueue::Continuation> signal;
    const auto log = std::make_shared<std::string>();
    awaitSignal(queue, signal, log);
    queue.advance(1s);
    EXPECT_EQ(*log, "ab");
    signal->resume();
    EXPECT_EQ(*log, "ab");
    queue.turn();
    EXPECT_EQ(*log, "abc");
}

TEST(MainQueueTest, ASuspendedFrameIsDestroyedWithTheQueueAlsoWhenItIsAboutToGoOn) {
    for (const bool isResumed : {false, true}) {
        const auto log = std::make_shared<std::string>();
        {
            std::optional<MainQueue::Continuation> signal;
            ManualMainQueue queue;
            awaitSignal(queue, signal, log);
            EXPECT_EQ(log.use_count(), 2);
            if (isResumed)
                signal->resume();
        }
        EXPECT_EQ(log.use_count(), 1);
        EXPECT_EQ(*log, "ab");
    }
}

QCoro::Task<> awaitInVain(MainQueue& queue) {
    co_await queue.suspension(
        [](MainQueue::Continuation) { throw std::runtime_error("nothing to wait for"); });
}

QCoro::Task<> fallBack(MainQueue& queue, std::shared_ptr<std::string> log) {
    try {
        co_await awaitInVain(queue);
    } catch (const std::runtime_error& error) {
        *log += error.what();
    }
}

TEST(MainQueueTest, ABodyThatThrowsThrowsIntoItsFrameForWhichTheQueueThenNoLongerCares) {
    const auto log = std::make_shared<std::string>();
    {
        ManualMainQueue queue;
        fallBack(queue, log);
        EXPECT_EQ(*log, "nothing to wait for");
        EXPECT_EQ(log.use_count(), 1) << "the frame has gone";
    }
    EXPECT_EQ(*log, "nothing to wait for") << "it was not called upon again";
}

QCoro::Task<> inner(MainQueue& queue, std::shared_ptr<int> held) {
    co_await queue.delay(1s);
    ++*held;
}

QCoro::Task<> outer(MainQueue& queue, std::shared_ptr<int> held) {
    co_await queue.nextTurn();
    co_await inner(queue, held);
    ++*held;
}

TEST(MainQueueTest, FramesThatStillWaitAreDestroyedWithTheQueueAndWhatTheyHoldWithThem) {
    auto held = std::make_shared<int>(0);
    {
        ManualMainQueue queue;
        outer(queue, held);
        outer(queue, held);
        queue.turn();
        EXPECT_GT(held.use_count(), 4);
    }
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);
}

} // namespace
} // namespace kestrova
