#include "tests/desktop/Waiting.h"

#include <thread>

namespace kestrova::test {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kStep{10};

} // namespace

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    const auto end = Clock::now() + deadline;
    while (!condition()) {
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kStep);
    }
    return true;
}

bool throughout(std::chrono::milliseconds duration, const std::function<bool()>& condition) {
    const auto end = Clock::now() + duration;
    while (condition()) {
        if (Clock::now() >= end)
            return true;
        std::this_thread::sleep_for(kStep);
    }
    return false;
}

} // namespace kestrova::test
