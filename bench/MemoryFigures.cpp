#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/ProcessUse.h"
#include "bench/Programs.h"
#include "bench/Stopwatch.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <thread>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr double budget = 40;
// Those of the history that is measured.
constexpr int pictures = 200;
// As many as the display has room for.
constexpr int captures = 4;
constexpr double budgetAfterCaptures = 45;
// Where the column of previews stands on a display of 1280x800, and a place within the lowest.
constexpr QRect previews{1'010, 20, 250, 760};
constexpr QPoint lowestPreview{1'136, 700};
// Longer than anything that the program puts off after it was used.
constexpr auto quiet = 11s;
// A look takes the program's time too.
constexpr auto pauseBetweenLooks = 500ms;

/// What the program uses once it has come to rest: a start goes on after the first answer, and pictures are
/// decoded for a while after they have been scrolled past.
MemoryUse memoryAtRest(qint64 pid) {
    constexpr double sameMegabytes = 0.2;
    constexpr double deadlineMilliseconds = 120'000;
    const Stopwatch watch;
    MemoryUse use = memoryUseOf(pid);
    double before = use.resident;
    for (Stopwatch steady; std::chrono::duration<double, std::milli>(steady.milliseconds()) < quiet;) {
        if (watch.milliseconds() > deadlineMilliseconds)
            throw std::runtime_error("the program does not come to rest");
        std::this_thread::sleep_for(pauseBetweenLooks);
        use = memoryUseOf(pid);
        if (std::abs(use.resident - before) > sameMegabytes) {
            before = use.resident;
            steady = {};
        }
    }
    return use;
}

void printMemory(const std::string& name, const MemoryUse& use, const MemoryUse& bare,
                 double budgetInMegabytes = budget) {
    char remark[128];
    std::snprintf(remark, sizeof remark, "PSS as told %.1f, resident %.1f, anonymous %.1f",
                  use.proportionalAsTold, use.resident, use.anonymous);
    print({.name = "memory (PSS), " + name,
           .unit = "MB",
           .measured = use.proportional,
           .floor = bare.proportional,
           .floorName = "a bare Qt Widgets program",
           .budget = budgetInMegabytes,
           .remark = remark});
}

/// Opens the shelf, looks at every picture of the history in turn, and closes it.
void scrollPastAllPictures(const PanelWatch& watch) {
    watch.millisecondsUntilChange(PanelArea::list, [&] {
        watch.chord({PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v});
    });
    watch.settledPixels(PanelArea::list);
    watch.millisecondsUntilChange(PanelArea::list, [&] {
        watch.chord({PanelKey::leftControl, PanelKey::leftShift, PanelKey::digit3});
    });
    watch.settledPixels(PanelArea::list);
    watch.press(PanelKey::down);
    watch.press(PanelKey::down);
    for (int picture = 1; picture < pictures; ++picture)
        watch.millisecondsUntilChange(PanelArea::list, [&] { watch.press(PanelKey::down); });
    watch.settledPixels(PanelArea::list);
    watch.millisecondsUntilChange(PanelArea::list, [&] { watch.press(PanelKey::escape); });
}

/// Takes captures, so that their previews stand.
void takeCaptures(const PanelWatch& watch, const RunningProgram& program) {
    for (int capture = 0; capture < captures; ++capture) {
        watch.millisecondsUntilChange(previews, [&] { program.ask({u"capture"_s, u"screen"_s}); });
        watch.settledPixels(previews);
    }
}

/// A click on one ends them all and opens the shelf, which is closed again.
void endPreviews(const PanelWatch& watch) {
    watch.movePointer(lowestPreview);
    watch.settledPixels(previews);
    watch.millisecondsUntilChange(PanelArea::list, [&] {
        watch.holdButton(true);
        watch.holdButton(false);
    });
    watch.settledPixels(PanelArea::list);
    watch.millisecondsUntilChange(PanelArea::list, [&] { watch.press(PanelKey::escape); });
}

} // namespace

void measureMemory(Desktop& desktop) {
    // One program at a time: two would share their libraries and look smaller.
    const auto bare = memoryUseOf(RunningProgram(desktop).pid());
    for (const auto& history : {desktop.empty(), desktop.texts(), desktop.textsAndPictures()}) {
        const RunningProgram program(desktop, history);
        printMemory(history.name, memoryAtRest(program.pid()), bare);
        program.ask({u"list"_s, u"--json"_s, u"--limit"_s, u"1000000"_s});
        printMemory(history.name + ", after list", memoryAtRest(program.pid()), bare);
        program.ask({u"list"_s, u"--search"_s, u"quicksilver"_s});
        printMemory(history.name + ", after search", memoryAtRest(program.pid()), bare);
    }
    const PanelWatch watch(desktop.session().display());
    const RunningProgram program(desktop, desktop.textsAndPictures());
    scrollPastAllPictures(watch);
    printMemory("all pictures scrolled past in the shelf", memoryAtRest(program.pid()), bare);
    takeCaptures(watch, program);
    printMemory("with the previews of captures", memoryAtRest(program.pid()), bare);
    endPreviews(watch);
    printMemory("after captures, previews closed", memoryAtRest(program.pid()), bare, budgetAfterCaptures);
}

} // namespace kestrova::bench
