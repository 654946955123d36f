#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/ProcessUse.h"
#include "bench/Programs.h"

#include <cstdio>
#include <initializer_list>

namespace kestrova::bench {
namespace {

using Samples = std::vector<double>;
using Keys = std::initializer_list<std::uint8_t>;

constexpr QPoint overTheList{500, 400};
constexpr QPoint besideThePanel{5, 5};
constexpr int turns = 20;
constexpr int notches = 400;
constexpr Keys shortcut{PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v};
constexpr Keys viewMode{PanelKey::leftControl, PanelKey::grave};

std::string spread(const Samples& samples) {
    char text[96];
    std::snprintf(text, sizeof text, "median %.1f, 99%% within %.1f", median(samples),
                  quantile(samples, 0.99));
    return text;
}

/// How long somebody who asks waits for an answer while the wheel is turned without a pause over `place`; and
/// no longer than that is the program away from its window.
Samples answersWhileScrolling(const PanelWatch& watch, QPoint place, const RunningProgram& program) {
    watch.movePointer(place);
    Samples times;
    for (int i = 0; i < notches; ++i) {
        const Stopwatch stopwatch;
        watch.turnWheel(true);
        program.ask({QStringLiteral("status")});
        times.push_back(stopwatch.milliseconds());
    }
    watch.movePointer(besideThePanel);
    return times;
}

void measureScrolling(Desktop& desktop, const PanelWatch& watch) {
    const auto& history = desktop.largePictures();
    const RunningProgram program(desktop, history);
    const auto floor = answersWhileScrolling(watch, besideThePanel, program);
    const auto report = [&](const char* view, const Samples& samples) {
        print({.name = std::string("longest time away while scrolling, ") + view + ": " + history.name,
               .unit = "ms",
               .measured = quantile(samples, 1),
               .floor = quantile(floor, 1),
               .floorName = "the same program at rest",
               .budget = 16,
               .remark = spread(samples)});
    };
    watch.chord(shortcut);
    watch.settledPixels(PanelArea::list);
    report("list", answersWhileScrolling(watch, overTheList, program));
    watch.chord(viewMode);
    watch.settledPixels(PanelArea::list);
    report("grid", answersWhileScrolling(watch, overTheList, program));
    watch.settledPixels(PanelArea::list);
    const auto use = memoryUseOf(program.pid());
    print({.name = "memory (PSS) after that",
           .unit = "MB",
           .measured = use.proportional,
           .floor = use.proportionalAsTold,
           .floorName = "the same as the kernel tells it",
           .budget = 40});
}

/// Times of two chords that undo each other, each to the picture that the panel settles on.
Samples timesOfTurns(const PanelWatch& watch, Keys there, Keys back) {
    const auto before = watch.settledPixels(PanelArea::body);
    watch.chord(there);
    const auto after = watch.settledPixels(PanelArea::body);
    if (before == after)
        throw std::runtime_error("a switch that is measured changes nothing");
    Samples times;
    for (int i = 0; i < turns; ++i) {
        times.push_back(watch.millisecondsUntil(PanelArea::body, before, [&] { watch.chord(back); }));
        times.push_back(watch.millisecondsUntil(PanelArea::body, after, [&] { watch.chord(there); }));
    }
    watch.chord(back);
    watch.settledPixels(PanelArea::body);
    return times;
}

void measureSwitches(Desktop& desktop, const PanelWatch& watch) {
    auto& bare = desktop.session().start({.program = QStringLiteral(BARE_PANEL_BINARY)});
    watch.settledPixels(PanelArea::body);
    watch.chord(shortcut);
    watch.settledPixels(PanelArea::body);
    const auto floor = timesOfTurns(watch, {PanelKey::q}, {PanelKey::q});
    bare.end();
    struct Switch {
        const char* name;
        Keys there;
        Keys back;
    };
    const RunningProgram program(desktop, desktop.textsAndPictures());
    watch.chord(shortcut);
    for (const auto& [name, there, back] :
         {Switch{"a lens and back",
                 {PanelKey::leftAlt, PanelKey::digit2},
                 {PanelKey::leftAlt, PanelKey::digit1}},
          Switch{"a chip and back",
                 {PanelKey::leftControl, PanelKey::leftShift, PanelKey::digit2},
                 {PanelKey::leftControl, PanelKey::leftShift, PanelKey::digit1}},
          Switch{"list and grid", viewMode, viewMode}}) {
        const auto samples = timesOfTurns(watch, there, back);
        print({.name = std::string("a switch to its last pixel, ") + name,
               .unit = "ms",
               .measured = median(samples),
               .floor = median(floor),
               .floorName = "a bare window that redraws on a key",
               .budget = 16,
               .remark = spread(samples)});
    }
}

} // namespace

void measureBrowsing(Desktop& desktop) {
    const PanelWatch watch(desktop.session().display());
    watch.movePointer(besideThePanel);
    measureSwitches(desktop, watch);
    measureScrolling(desktop, watch);
}

} // namespace kestrova::bench
