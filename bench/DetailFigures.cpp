#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"

#include <cstdio>
#include <initializer_list>
#include <utility>

namespace kestrova::bench {
namespace {

using Samples = std::vector<double>;
using Keys = std::initializer_list<std::uint8_t>;

constexpr QPoint besideThePanel{5, 5};
constexpr int turns = 5;
constexpr qsizetype hugeLength = 50'000'000;
constexpr Keys shortcut{PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v};

/// What shows a detail, without a caret that blinks.
namespace DetailArea {
constexpr QRect pane{660, 260, 440, 260};
constexpr QRect screen{400, 400, 500, 200};
} // namespace DetailArea

struct Detail {
    const char* name;
    QRect area;
    Keys open;
    Keys close;
    enum class From { desktop, list } from = From::list;
    /// Only of texts.
    bool isOfTexts = false;
};

constexpr Keys escape{PanelKey::escape};

/// A person's way from the search into the list, where a blank previews.
void walkToList(const PanelWatch& watch) {
    watch.chord(shortcut);
    watch.settledPixels(PanelArea::body);
    watch.press(PanelKey::down);
    watch.press(PanelKey::down);
    watch.settledPixels(PanelArea::body);
}

/// Settled for so long that no picture is still being decoded.
QByteArray finalPixels(const PanelWatch& watch, const QRect& area) {
    constexpr int looks = 8;
    auto last = watch.settledPixels(area);
    for (int same = 0; same < looks; ++same) {
        auto now = watch.settledPixels(area);
        if (now != last)
            same = 0;
        last = std::move(now);
    }
    return last;
}

Samples timesOfOpening(const PanelWatch& watch, const Detail& detail) {
    watch.chord(detail.open);
    const auto opened = finalPixels(watch, detail.area);
    watch.chord(detail.close);
    if (watch.settledPixels(detail.area) == opened)
        throw std::runtime_error("a detail that is measured shows nothing");
    Samples times;
    for (int i = 0; i < turns; ++i) {
        times.push_back(watch.millisecondsUntil(detail.area, opened, [&] { watch.chord(detail.open); }));
        watch.chord(detail.close);
        watch.settledPixels(detail.area);
    }
    return times;
}

/// From the key to the last pixel, and so with the transition; the ordinary item has the same one.
Samples timesWith(Desktop& desktop, const Desktop::History& history, const PanelWatch& watch,
                  const Detail& detail) {
    const RunningProgram program(desktop, history);
    if (detail.from == Detail::From::list)
        walkToList(watch);
    return timesOfOpening(watch, detail);
}

std::string spread(const Samples& samples) {
    char text[96];
    std::snprintf(text, sizeof text, "longest %.1f", quantile(samples, 1));
    return text;
}

QString lines(qsizetype length) {
    constexpr qsizetype lineLength = 80;
    const QString line =
        QStringLiteral("All that is copied is kept for those who ask. ").repeated(2).left(lineLength - 1);
    return (line + u'\n').repeated(length / lineLength);
}

} // namespace

void measureDetails(Desktop& desktop) {
    const PanelWatch watch(desktop.session().display());
    watch.movePointer(besideThePanel);
    const auto ordinary = desktop.holding("a short text", QStringLiteral("some words"));
    const std::vector<Desktop::History> large{
        desktop.holding("50 MB of lines", lines(hugeLength)),
        desktop.holding("50 MB in one line", QString(hugeLength, u'x')),
        desktop.hugePicture(),
    };
    for (const auto& detail :
         {Detail{"pane", DetailArea::pane, shortcut, shortcut, Detail::From::desktop},
          Detail{"preview", DetailArea::screen, {PanelKey::space}, escape},
          Detail{"editor",
                 DetailArea::screen,
                 {PanelKey::leftControl, PanelKey::e},
                 escape,
                 Detail::From::list,
                 true},
          Detail{"card", DetailArea::screen, {PanelKey::leftControl, PanelKey::k}, escape}}) {
        const auto floor = timesWith(desktop, ordinary, watch, detail);
        for (const auto& history : large) {
            if (detail.isOfTexts && &history == &large.back())
                continue;
            const auto samples = timesWith(desktop, history, watch, detail);
            print({.name = std::string("opening of the ") + detail.name + ": " + history.name,
                   .unit = "ms",
                   .measured = median(samples),
                   .floor = median(floor),
                   .floorName = "the same of a short text",
                   .remark = spread(samples)});
        }
    }
}

} // namespace kestrova::bench
