#include "Platform/x11/QtMainQueue.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

template<typename Happened>
void processUntil(Happened happened) {
    while (!happened())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
}

TEST(QtMainQueueTest, RunsBlocksOnLaterTurnsInTheirOrder) {
    QtMainQueue queue;
    std::string ran;
    queue.post([&] {
        ran += 'a';
        queue.post([&] { ran += 'c'; });
    });
    queue.post([&] { ran += 'b'; });
    EXPECT_EQ(ran, "");
    processUntil([&] { return ran.size() == 3; });
    EXPECT_EQ(ran, "abc");
}

TEST(QtMainQueueTest, ADelayedBlockDoesNotRunEarly) {
    QtMainQueue queue;
    QElapsedTimer elapsed;
    elapsed.start();
    bool ran = false;
    queue.after(30ms, [&] { ran = true; });
    processUntil([&] { return ran; });
    EXPECT_GE(elapsed.elapsed(), 30);
}

TEST(QtMainQueueTest, ARepeatingBlockRunsUntilItCancelsItself) {
    QtMainQueue queue;
    int ticks = 0;
    bool later = false;
    ScheduledBlock timer = queue.every(1ms, [&] {
        if (++ticks == 3) {
            timer.cancel();
            queue.after(20ms, [&] { later = true; });
        }
    });
    processUntil([&] { return later; });
    EXPECT_EQ(ticks, 3);
}

TEST(QtMainQueueTest, TakesBlocksFromOtherThreadsAndRunsThemOnItsOwn) {
    QtMainQueue queue;
    std::thread::id ranOn;
    std::thread other([&] { queue.postFromAnyThread([&] { ranOn = std::this_thread::get_id(); }); });
    processUntil([&] { return ranOn != std::thread::id(); });
    other.join();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

QCoro::Task<> waiting(MainQueue& queue, std::shared_ptr<int> held) {
    co_await queue.delay(1h);
    ++*held;
}

TEST(QtMainQueueTest, WhatStillWaitsGoesWithTheQueue) {
    auto held = std::make_shared<int>(0);
    bool ran = false;
    {
        QtMainQueue queue;
        waiting(queue, held);
        queue.post([&] { ran = true; });
        EXPECT_EQ(held.use_count(), 2);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(ran);
}

} // namespace
} // namespace kestrova
