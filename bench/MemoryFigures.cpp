#include "bench/Figure.h"
#include "bench/ProcessFigures.h"
#include "bench/ProcessUse.h"
#include "bench/Programs.h"

#include <cstdio>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr double budget = 40;

void printMemory(const std::string& name, const MemoryUse& use, const MemoryUse& bare) {
    char remark[128];
    std::snprintf(remark, sizeof remark, "PSS as told %.1f, resident %.1f, anonymous %.1f",
                  use.proportionalAsTold, use.resident, use.anonymous);
    print({.name = "memory (PSS), " + name,
           .unit = "MB",
           .measured = use.proportional,
           .floor = bare.proportional,
           .floorName = "a bare Qt Widgets program",
           .budget = budget,
           .remark = remark});
}

} // namespace

void measureMemory(Desktop& desktop) {
    // One program at a time: two would share their libraries and look smaller.
    const auto bare = memoryUseOf(RunningProgram(desktop).pid());
    for (const auto& history : {desktop.empty(), desktop.texts(), desktop.textsAndPictures()}) {
        const RunningProgram program(desktop, history);
        printMemory(history.name, memoryUseOf(program.pid()), bare);
        program.ask({u"list"_s, u"--json"_s, u"--limit"_s, u"1000000"_s});
        printMemory(history.name + ", after list", memoryUseOf(program.pid()), bare);
        program.ask({u"list"_s, u"--search"_s, u"quicksilver"_s});
        printMemory(history.name + ", after search", memoryUseOf(program.pid()), bare);
    }
}

} // namespace kestrova::bench
