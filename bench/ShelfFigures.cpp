#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"

#include <array>
#include <functional>

namespace kestrova::bench {
namespace {

constexpr QPoint overTheList{500, 400};
constexpr QPoint besideThePanel{5, 5};
constexpr int shows = 30;
constexpr int presses = 40;

using Samples = std::vector<double>;

void pressShortcut(const PanelWatch& watch) {
    watch.chord({PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v});
}

/// Times of shows, each to the picture that the panel settles on.
Samples timesOfShows(const PanelWatch& watch) {
    const auto desktop = watch.settledPixels(PanelArea::list);
    pressShortcut(watch);
    const auto shown = watch.settledPixels(PanelArea::list);
    Samples times;
    for (int i = 0; i < shows; ++i) {
        watch.millisecondsUntil(PanelArea::list, desktop, [&] { pressShortcut(watch); });
        watch.settledPixels(PanelArea::list);
        times.push_back(watch.millisecondsUntil(PanelArea::list, shown, [&] { pressShortcut(watch); }));
    }
    return times;
}

/// Times of two acts that undo each other, each to the picture that `area` settles on.
Samples timesOfTurns(const PanelWatch& watch, const QRect& area, const std::function<void()>& there,
                     const std::function<void()>& back) {
    const auto before = watch.settledPixels(area);
    there();
    const auto after = watch.settledPixels(area);
    if (before == after)
        throw std::runtime_error("a key press that is measured changes nothing");
    watch.millisecondsUntil(area, before, back);
    Samples times;
    for (int i = 0; i < presses; ++i) {
        times.push_back(watch.millisecondsUntil(area, after, there));
        times.push_back(watch.millisecondsUntil(area, before, back));
    }
    return times;
}

Samples timesOfKeys(const PanelWatch& watch, const QRect& area, std::uint8_t there, std::uint8_t back) {
    return timesOfTurns(
        watch, area, [&] { watch.press(there); }, [&] { watch.press(back); });
}

Samples timesOfScrolling(const PanelWatch& watch) {
    watch.movePointer(overTheList);
    watch.settledPixels(PanelArea::list);
    Samples times;
    for (int i = 0; i < presses; ++i) {
        times.push_back(watch.millisecondsUntilChange(PanelArea::list, [&] { watch.turnWheel(true); }));
        watch.settledPixels(PanelArea::list);
    }
    watch.movePointer(besideThePanel);
    return times;
}

std::string rest(const Samples& samples) {
    char text[64];
    std::snprintf(text, sizeof text, "95%% within %.1f, slowest %.1f", quantile(samples, 0.95),
                  quantile(samples, 1));
    return text;
}

void report(const std::string& name, const Samples& samples, const Samples& floor, const char* floorName,
            double budget) {
    print({.name = name,
           .unit = "ms",
           .measured = median(samples),
           .floor = median(floor),
           .floorName = floorName,
           .budget = budget,
           .remark = rest(samples)});
}

struct Floors {
    Samples show;
    Samples key;
    Samples wheel;
};

Floors floorsOf(Desktop& desktop, const PanelWatch& watch) {
    auto& bare = desktop.session().start({.program = QStringLiteral(BARE_PANEL_BINARY)});
    watch.settledPixels(PanelArea::list);
    Floors floors{.show = timesOfShows(watch),
                  .key = timesOfKeys(watch, PanelArea::list, PanelKey::q, PanelKey::q),
                  .wheel = timesOfScrolling(watch)};
    bare.end();
    return floors;
}

} // namespace

void measureShelf(Desktop& desktop) {
    const PanelWatch watch(desktop.session().display());
    watch.movePointer(besideThePanel);
    const auto floors = floorsOf(desktop, watch);
    constexpr auto bareShow = "a bare window of the toolkit on the same shortcut";
    constexpr auto bareKey = "a bare window that redraws on a key";
    for (const auto& history : {desktop.empty(), desktop.texts(), desktop.textsAndPictures()}) {
        const RunningProgram program(desktop, history);
        report("shortcut to the painted shelf: " + history.name, timesOfShows(watch), floors.show, bareShow,
               16);
    }
    struct Searched {
        const Desktop::History& history;
        double budget;
    };
    for (const auto& [searched, budget] : {Searched{desktop.texts(), 8}, Searched{desktop.manyTexts(), 16}}) {
        const RunningProgram program(desktop, searched);
        pressShortcut(watch);
        report("one letter typed to the repainted list: " + searched.name,
               timesOfKeys(watch, PanelArea::list, PanelKey::q, PanelKey::backspace), floors.key, bareKey,
               budget);
    }
    const auto& history = desktop.textsAndPictures();
    const RunningProgram program(desktop, history);
    pressShortcut(watch);
    watch.settledPixels(PanelArea::body);
    report("a key in the search lane (to the chips and back)",
           timesOfKeys(watch, PanelArea::body, PanelKey::down, PanelKey::up), floors.key, bareKey, 8);
    watch.press(PanelKey::down);
    report("a key in the lane of the chips (next chip and back)",
           timesOfKeys(watch, PanelArea::body, PanelKey::right, PanelKey::left), floors.key, bareKey, 8);
    watch.press(PanelKey::down);
    report("a key in the lane of the list (next row and back)",
           timesOfKeys(watch, PanelArea::body, PanelKey::down, PanelKey::up), floors.key, bareKey, 8);
    watch.press(PanelKey::left);
    report("a key in the lane of the sidebar (next lens and back)",
           timesOfKeys(watch, PanelArea::body, PanelKey::down, PanelKey::up), floors.key, bareKey, 8);
    const auto scrolling = timesOfScrolling(watch);
    print({.name = "one notch of the wheel to the scrolled list, slowest of " + std::to_string(presses),
           .unit = "ms",
           .measured = quantile(scrolling, 1),
           .floor = quantile(floors.wheel, 1),
           .floorName = "the slowest of a bare window",
           .budget = 16,
           .remark = rest(scrolling)});
}

} // namespace kestrova::bench
