#include "bench/BareGrab.h"
#include "bench/Figure.h"
#include "bench/PanelWatch.h"
#include "bench/ProcessFigures.h"
#include "bench/Programs.h"
#include "bench/ScreenSamples.h"

#include <functional>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int shows = 20;
constexpr int moves = 200;
constexpr int drags = 40;

using Samples = std::vector<double>;
using Act = std::function<void()>;

struct DisplaySize {
    QSize pixels;
    double showBudget;
};

/// What the mouse does to a window that covers the display, and what is to be seen of it.
class MouseFigures {
public:
    MouseFigures(const PanelWatch& watch, QSize display) : m_watch(watch), m_display(display) {}

    /// Of every row of the display.
    QRect probe() const { return {m_display.width() / 5, 0, 1, m_display.height()}; }
    void rest() const { m_watch.movePointer(place(0)); }

    /// Each from a move of the mouse to the mark at its new place.
    Samples timesOfMoves() const {
        Samples times;
        for (int i = 1; i <= moves; ++i) {
            const auto to = place(i);
            times.push_back(m_watch.millisecondsUntilChange(mark(to), [&] { m_watch.movePointer(to); }));
        }
        return times;
    }

    /// Each from a move that opens or closes most of the display, with the button held.
    Samples timesOfDrags() const {
        const QPoint corner(m_display.width() / 20, m_display.height() / 20);
        const QPoint near(m_display.width() / 4, m_display.height() / 4);
        const QPoint far(m_display.width() * 9 / 10, m_display.height() * 9 / 10);
        const QRect inside(far - QPoint(40, 40), QSize(8, 8));
        m_watch.movePointer(corner);
        m_watch.holdButton(true);
        m_watch.movePointer(near);
        m_watch.settledPixels(inside);
        Samples times;
        for (int i = 0; i < drags; ++i)
            times.push_back(m_watch.millisecondsUntilChange(
                inside, [&] { m_watch.movePointer(i % 2 == 0 ? far : near); }));
        return times;
    }

    void release() const { m_watch.holdButton(false); }

private:
    // Far enough apart that no mark reaches to the next one; nothing else is drawn there.
    QPoint place(int number) const {
        constexpr int step = 150;
        return {60 + number % ((m_display.width() - 300) / step) * step, m_display.height() / 4};
    }
    static QRect mark(QPoint mouse) { return {mouse + QPoint(18, 13), QSize(4, 4)}; }

    const PanelWatch& m_watch;
    QSize m_display;
};

/// From `show` to every row of the window as it settles; `hide` brings back what was there before.
Samples timesOfShows(const PanelWatch& watch, const QRect& probe, const Act& show, const Act& hide) {
    const auto desktop = watch.settledPixels(probe);
    show();
    const auto shown = watch.settledPixels(probe);
    if (shown == desktop)
        throw std::runtime_error("nothing covers the display");
    Samples times;
    for (int i = 0; i < shows; ++i) {
        watch.millisecondsUntil(probe, desktop, hide);
        watch.settledPixels(probe);
        times.push_back(watch.millisecondsUntil(probe, shown, show));
    }
    return times;
}

struct Floors {
    Samples grab;
    Samples show;
    Samples move;
};

Floors floorsOf(test::DesktopSession& session, const PanelWatch& watch, const MouseFigures& mouse,
                const BareGrab& bareGrab) {
    Floors floors;
    for (int i = 0; i < shows; ++i) {
        const Stopwatch grab;
        bareGrab.grab();
        floors.grab.push_back(grab.milliseconds());
    }
    auto& bare = session.start({.program = QStringLiteral(BARE_OVERLAY_BINARY)});
    watch.settledPixels(mouse.probe());
    const Act press = [&] { watch.chord({PanelKey::leftSuper, PanelKey::leftShift, PanelKey::v}); };
    floors.show = timesOfShows(watch, mouse.probe(), press, press);
    floors.move = mouse.timesOfMoves();
    bare.end();
    return floors;
}

std::string text(const char* format, double first, double second) {
    char bytes[96];
    std::snprintf(bytes, sizeof bytes, format, first, second);
    return bytes;
}

std::string slower(const Samples& samples) {
    return text("95%% within %.1f, slowest %.1f", quantile(samples, 0.95), quantile(samples, 1));
}

void measureDisplay(const DisplaySize& display) {
    const auto& [size, showBudget] = display;
    test::DesktopSession session(test::DesktopSession::Bus::Own, test::DesktopSession::Accessibility::Off,
                                 size);
    const PanelWatch watch(session.display());
    const MouseFigures mouse(watch, size);
    const BareGrab bareGrab(session.display());
    bareGrab.showBehindAll(screenSamples(size).front().picture);
    mouse.rest();
    const auto floors = floorsOf(session, watch, mouse, bareGrab);

    const RunningProgram program(session, session.path(u"data"_s));
    mouse.rest();
    const auto shown = timesOfShows(
        watch, mouse.probe(),
        [&] {
            program.ask({u"capture"_s, u"area"_s});
        },
        [&] { watch.press(PanelKey::escape); });
    const std::string where = std::to_string(size.width()) + "x" + std::to_string(size.height());
    print({.name = "request to the painted overlay, " + where,
           .unit = "ms",
           .measured = median(shown),
           .floor = median(floors.show) + median(floors.grab),
           .floorName =
               text("a bare window, %.1f, and a bare grab, %.1f", median(floors.show), median(floors.grab)),
           .budget = showBudget,
           .remark = slower(shown)});

    constexpr double frame = 16;
    const auto moved = mouse.timesOfMoves();
    print({.name = "a move of the mouse to its numbers, " + where + ", " + std::to_string(moves) + " times",
           .unit = "ms",
           .measured = median(moved),
           .floor = median(floors.move),
           .floorName = "a bare window that draws a mark",
           .budget = frame,
           .remark = slower(moved)});
    const auto dragged = mouse.timesOfDrags();
    print({.name = "a drag across most of the display, " + where,
           .unit = "ms",
           .measured = median(dragged),
           .floor = median(floors.move),
           .floorName = "a bare window that draws a mark",
           .budget = frame,
           .remark = slower(dragged)});
    watch.press(PanelKey::escape);
    mouse.release();
}

} // namespace

// Each size wants a display of its own.
void measureOverlay(Desktop& /*desktop*/) {
    for (const auto& display : {DisplaySize{{1'920, 1'080}, 50}, DisplaySize{{3'840, 2'160}, 120}})
        measureDisplay(display);
}

} // namespace kestrova::bench
