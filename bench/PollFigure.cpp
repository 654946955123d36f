#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/MonitorUnderMeasure.h"
#include "bench/Stopwatch.h"

#include <benchmark/benchmark.h>

namespace kestrova::bench {
namespace {

constexpr int runs = 21;
constexpr int callsPerRun = 1'000'000;

template<typename Call>
double nanosecondsPerCall(Call call) {
    const Stopwatch watch;
    for (int i = 0; i < callsPerRun; ++i)
        call();
    return watch.nanoseconds() / callsPerRun;
}

} // namespace

void measurePoll(const QString& directory) {
    MonitorUnderMeasure measured(directory + QStringLiteral("/poll"), 500);
    // Read anew for each call, so that none is hoisted out of the loop.
    const Pasteboard* volatile pasteboard = &measured.pasteboard();
    std::vector<double> polls;
    std::vector<double> virtualCalls;
    for (int run = 0; run < runs; ++run) {
        polls.push_back(nanosecondsPerCall([&] { measured.monitor().poll(); }));
        virtualCalls.push_back(
            nanosecondsPerCall([&] { benchmark::DoNotOptimize(pasteboard->changeCount()); }));
    }
    print({.name = "poll without a change",
           .unit = "ns",
           .measured = median(polls),
           .floor = median(virtualCalls),
           .floorName = "one virtual call",
           .remark = "150 polls a minute"});
}

} // namespace kestrova::bench
