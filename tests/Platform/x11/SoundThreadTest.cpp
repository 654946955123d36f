#include "Platform/x11/SoundThread.h"

#include "tests/support/LogCapture.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <future>
#include <memory>

namespace {

// The function below has the C library's name and cannot be told otherwise.
std::atomic<bool> threadsAreRefused = false;

} // namespace

/// In the C library's place: refuses threads on request, as a system does that has too many.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                              void* argument) noexcept {
    if (threadsAreRefused)
        return EAGAIN;
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, run, argument);
}

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using testing::SizeIs;

class RefusedThreads {
public:
    RefusedThreads() { threadsAreRefused = true; }
    RefusedThreads(const RefusedThreads&) = delete;
    RefusedThreads& operator=(const RefusedThreads&) = delete;
    ~RefusedThreads() { threadsAreRefused = false; }
};

/// Tells the first file that it is to play.
class Listener : public SoundBackend {
public:
    explicit Listener(std::promise<std::string>& heard) : m_heard(heard) {}
    void play(const std::string& path) override { m_heard.set_value(path); }

private:
    std::promise<std::string>& m_heard;
};

TEST(SoundThreadTest, WithoutAThreadNothingPlaysAndTheLogTellsItOnce) {
    std::promise<std::string> heard;
    const LogCapture log;
    {
        SoundThread thread([&] { return std::make_unique<Listener>(heard); }, 20s);
        const RefusedThreads refused;
        thread.play("one");
        thread.play("another");
    }
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines().first().startsWith(QStringLiteral("[SoundPlayer] no thread for sounds: ")))
        << qPrintable(log.lines().first());
}

TEST(SoundThreadTest, WhatComesOnceThereAreThreadsAgainIsPlayed) {
    std::promise<std::string> heard;
    auto first = heard.get_future();
    SoundThread thread([&] { return std::make_unique<Listener>(heard); }, 20s);
    {
        const LogCapture log;
        const RefusedThreads refused;
        thread.play("lost");
    }
    thread.play("late");
    ASSERT_EQ(first.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(first.get(), "late");
}

} // namespace
} // namespace kestrova
