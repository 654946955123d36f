#include "tests/desktop/ResponseProbe.h"

#include "tests/desktop/CommandConnection.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestrova::test {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Often enough to see every stall that matters, seldom enough not to be the load itself.
constexpr auto kPeriod = 5ms;

} // namespace

ResponseProbe::ResponseProbe(const QString& busAddress)
    : m_thread([this, busAddress] { measure(busAddress); }) {}

ResponseProbe::~ResponseProbe() {
    stop();
}

ResponseProbe::Result ResponseProbe::stop() {
    m_stopping = true;
    if (!m_thread.joinable())
        return m_result;
    m_thread.join();
    if (!m_durations.empty()) {
        std::ranges::sort(m_durations);
        m_result.typical = std::chrono::ceil<std::chrono::milliseconds>(m_durations[m_durations.size() / 2]);
        m_result.slowest = std::chrono::ceil<std::chrono::milliseconds>(m_durations.back());
    }
    return m_result;
}

void ResponseProbe::measure(const QString& busAddress) {
    CommandConnection commands(busAddress);
    while (!m_stopping) {
        const auto asked = std::chrono::steady_clock::now();
        if (commands.run({u"status"_s}))
            ++m_result.answers;
        else
            ++m_result.failures;
        m_durations.push_back(std::chrono::steady_clock::now() - asked);
        std::this_thread::sleep_for(kPeriod);
    }
}

void expectPrompt(const ResponseProbe::Result& answers) {
    EXPECT_EQ(answers.failures, 0);
    EXPECT_GT(answers.answers, 0);
    EXPECT_LE(answers.typical, 50ms);
    EXPECT_LT(answers.slowest, 1s);
}

} // namespace kestrova::test
