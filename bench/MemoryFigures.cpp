#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/ProcessUse.h"
#include "bench/Programs.h"

#include <cstdio>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr double budget = 40;
// Those of the history that is measured.
constexpr int pictures = 200;

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

/// Opens the shelf, looks at every picture of the history in turn, and closes it.
void scrollPastAllPictures(const PanelWatch& watch) {
    watch.chord({PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v});
    watch.settledPixels(PanelArea::list);
    watch.chord({PanelKey::leftControl, PanelKey::leftShift, PanelKey::digit3});
    watch.settledPixels(PanelArea::list);
    watch.press(PanelKey::down);
    watch.press(PanelKey::down);
    for (int picture = 1; picture < pictures; ++picture)
        watch.millisecondsUntilChange(PanelArea::list, [&] { watch.press(PanelKey::down); });
    watch.settledPixels(PanelArea::list);
    watch.press(PanelKey::escape);
    watch.settledPixels(PanelArea::list);
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
    const PanelWatch watch(desktop.session().display());
    const RunningProgram program(desktop, desktop.textsAndPictures());
    scrollPastAllPictures(watch);
    printMemory("all pictures scrolled past in the shelf", memoryUseOf(program.pid()), bare);
}

} // namespace kestrova::bench
