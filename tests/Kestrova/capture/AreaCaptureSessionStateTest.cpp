#include "tests/Kestrova/capture/AreaCaptureSessionFixture.h"

#include "Kestrova/capture/DisplayCoordinates.h"

#include <ostream>
#include <random>

namespace kestrova {
namespace {

enum class State { freezing, area, dragging, frozen, window, done };
enum class Event {
    picturesTaken,
    noPictures,
    space,
    f,
    escape,
    cancelOperation,
    press,
    drag,
    release,
    click
};

constexpr const char* kStates[]{"freezing", "area", "dragging", "frozen", "window", "done"};
constexpr const char* kEvents[]{"pictures", "noPictures", "space", "f",       "escape",
                                "cancel",   "press",      "drag",  "release", "click"};

struct Row {
    State from;
    Event event;
    State to;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << kStates[static_cast<int>(row.from)] << ", " << kEvents[static_cast<int>(row.event)] << " -> "
         << kStates[static_cast<int>(row.to)];
}

class AreaCaptureSessionStateTest : public AreaCaptureSessionFixture,
                                    public testing::WithParamInterface<Row> {
protected:
    AreaCaptureSessionStateTest() { show({window(7, {0, 0, 600, 600})}); }

    void enter(State state) {
        if (state == State::freezing) {
            content.holdsPictures = true;
            begin(CaptureMode::area);
            return;
        }
        select(state == State::window ? CaptureMode::window : CaptureMode::area);
        if (state == State::dragging)
            perform(Event::press);
        if (state == State::frozen)
            perform(Event::f);
        if (state == State::done)
            perform(Event::escape);
    }
    void perform(Event event) {
        const auto target = panels.all.empty() ? nullptr : panels.all[0]->view;
        switch (event) {
        case Event::picturesTaken:
            content.heldPictures.give(0);
            content.heldPictures.give(1);
            break;
        case Event::noPictures:
            content.heldPictures.fail(0, screenContentError(ScreenContentError::Code::noPicture));
            content.heldPictures.fail(1, screenContentError(ScreenContentError::Code::noPicture));
            break;
        case Event::space:
            key(Key::space);
            break;
        case Event::f:
            key(Key::f);
            break;
        case Event::escape:
            key(Key::escape);
            break;
        case Event::cancelOperation:
            target->cancelOperation();
            break;
        case Event::press:
            target->mouseDown({100, 1000});
            break;
        case Event::drag:
            target->mouseDragged({300, 900});
            break;
        case Event::release:
            target->mouseUp({300, 900});
            break;
        case Event::click:
            target->mouseDown({100, 1000});
            target->mouseUp({100, 1000});
            break;
        }
        queue.turn();
    }
    State state() const {
        if (panels.all.empty())
            return State::freezing;
        if (!isRunning())
            return State::done;
        if (session->mode() == CaptureMode::window)
            return State::window;
        if (session->isFrozenActive())
            return State::frozen;
        return session->startGlobalPoint() ? State::dragging : State::area;
    }
};

TEST_P(AreaCaptureSessionStateTest, IsLeftAsTheTableTells) {
    enter(GetParam().from);
    ASSERT_EQ(state(), GetParam().from);
    perform(GetParam().event);
    EXPECT_EQ(state(), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AreaCaptureSessionStateTest,
    testing::Values(
        Row{State::freezing, Event::picturesTaken, State::area},
        Row{State::freezing, Event::noPictures, State::area}, Row{State::area, Event::space, State::window},
        Row{State::area, Event::f, State::frozen}, Row{State::area, Event::press, State::dragging},
        Row{State::area, Event::drag, State::area}, Row{State::area, Event::release, State::done},
        Row{State::area, Event::escape, State::done}, Row{State::area, Event::cancelOperation, State::done},
        Row{State::dragging, Event::drag, State::dragging}, Row{State::dragging, Event::release, State::done},
        Row{State::dragging, Event::space, State::window}, Row{State::dragging, Event::f, State::frozen},
        Row{State::dragging, Event::escape, State::done},
        Row{State::dragging, Event::cancelOperation, State::done}, Row{State::frozen, Event::f, State::area},
        Row{State::frozen, Event::space, State::window}, Row{State::frozen, Event::press, State::frozen},
        Row{State::frozen, Event::release, State::done}, Row{State::frozen, Event::escape, State::done},
        Row{State::frozen, Event::cancelOperation, State::done},
        Row{State::window, Event::space, State::area}, Row{State::window, Event::click, State::done},
        Row{State::window, Event::f, State::window}, Row{State::window, Event::release, State::window},
        Row{State::window, Event::drag, State::window}, Row{State::window, Event::escape, State::done},
        Row{State::window, Event::cancelOperation, State::done}, Row{State::done, Event::escape, State::done},
        Row{State::done, Event::f, State::done}));

/// Displays at random places, of which one may be the primary, and drags from anywhere to anywhere.
class AreaCaptureSessionPropertyTest : public AreaCaptureSessionFixture {
protected:
    double between(int least, int most) {
        return std::uniform_int_distribution(4 * least, 4 * most)(m_random) / 4.0;
    }
    void arrangeDisplays() {
        screens.all.clear();
        const int count = std::uniform_int_distribution(1, 4)(m_random);
        for (int i = 0; i < count; ++i)
            screens.all.push_back(
                display(static_cast<std::uint32_t>(i + 1),
                        {i == 1 ? 0 : between(-4000, 4000), i == 1 ? 0 : between(-4000, 4000),
                         between(640, 3840), between(480, 2160)},
                        1));
        screens.main = screens.all.front();
        content.content.displays.clear();
    }

private:
    std::mt19937 m_random{20};
};

TEST_F(AreaCaptureSessionPropertyTest, AnAreaIsTheDragCutToTheDisplayThatItBeganOn) {
    for (int round = 0; round < 300; ++round) {
        arrangeDisplays();
        panels.all.clear();
        outcome = std::make_shared<Outcome>();
        select(CaptureMode::area);
        const auto& start = screens.all.back();
        const QPointF from{between(0, 600), between(0, 400)};
        const QPointF to{between(-5000, 5000), between(-5000, 5000)};
        drag(from, to, screens.all.size() - 1);
        const double left = std::max(0.0, std::min(from.x(), to.x()));
        const double bottom = std::max(0.0, std::min(from.y(), to.y()));
        const double right = std::min(start.frame.width, std::max(from.x(), to.x()));
        const double top = std::min(start.frame.height, std::max(from.y(), to.y()));
        if (right - left <= 4 || top - bottom <= 4) {
            EXPECT_TRUE(isCancelled());
        } else {
            ASSERT_TRUE(area());
            EXPECT_EQ(area()->rect,
                      (ScreenRect{start.frame.x + left, start.frame.y + bottom, right - left, top - bottom}));
        }
    }
}

TEST_F(AreaCaptureSessionPropertyTest, AWindowIsHoveredJustWhereItsFrameIsShown) {
    for (int round = 0; round < 300; ++round) {
        arrangeDisplays();
        panels.all.clear();
        outcome = std::make_shared<Outcome>();
        show({window(5, {between(-4000, 4000), between(-4000, 4000), between(2, 2000), between(2, 2000)})});
        select(CaptureMode::window);
        const auto frame = globalToAppKit(content.content.windows.front().frame, screens);
        for (const double inset : {0.25, -0.25}) {
            for (const auto point : {QPointF(frame.x + inset, frame.maxY() - inset),
                                     QPointF(frame.maxX() - inset, frame.y + inset)}) {
                session->updateHover(point);
                EXPECT_EQ(hovered(), inset > 0 ? 5U : 0U);
            }
        }
        session->updateHover({frame.midX(), frame.y + frame.height / 2});
        for (const auto& panel : panels.all)
            EXPECT_EQ(panel->view->hoveredWindowFrameGlobal(), frame);
        session->finish(std::nullopt);
        queue.turn();
    }
}

} // namespace
} // namespace kestrova
