#include "tests/desktop/ResponseProbe.h"

#include "tests/desktop/CommandConnection.h"

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
    if (m_thread.joinable())
        m_thread.join();
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
        const auto took = std::chrono::steady_clock::now() - asked;
        m_result.slowest = std::max(m_result.slowest, std::chrono::ceil<std::chrono::milliseconds>(took));
        std::this_thread::sleep_for(kPeriod);
    }
}

} // namespace kestrova::test
