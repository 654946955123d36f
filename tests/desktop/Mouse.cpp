#include "tests/desktop/Mouse.h"

#include <xcb/xtest.h>

#include <thread>

namespace kestrova::test {

using namespace std::chrono_literals;

namespace {

// Programs answer a drag move by move, and none drops before it has been answered. Nothing on the display
// tells of the answers.
constexpr int kStepsOfAPull = 15;
constexpr auto kStep = 15ms;
constexpr auto kBeforeLettingGo = 400ms;

} // namespace

void Mouse::settle() const {
    const XReply<xcb_query_pointer_reply_t> carriedOut(
        xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
}

void Mouse::moveTo(QPoint place) {
    m_place = place;
    xcb_test_fake_input(m_x.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_x.root(),
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
    settle();
}

void Mouse::fakeButton(std::uint8_t type, Button button) {
    xcb_test_fake_input(m_x.get(), type, static_cast<std::uint8_t>(button), XCB_CURRENT_TIME, XCB_NONE, 0, 0,
                        0);
}

void Mouse::click(QPoint place, Button button) {
    moveTo(place);
    fakeButton(XCB_BUTTON_PRESS, button);
    fakeButton(XCB_BUTTON_RELEASE, button);
    settle();
}

void Mouse::doubleClick(QPoint place) {
    moveTo(place);
    // In one go: on a loaded machine two clicks that are each waited for would be two single ones.
    for (int click = 0; click < 2; ++click) {
        fakeButton(XCB_BUTTON_PRESS, Button::Left);
        fakeButton(XCB_BUTTON_RELEASE, Button::Left);
    }
    settle();
}

void Mouse::pull(QPoint from, QPoint to) {
    moveTo(from);
    fakeButton(XCB_BUTTON_PRESS, Button::Left);
    settle();
    pullOn(to);
}

void Mouse::pullOn(QPoint to) {
    const QPoint from = m_place;
    for (int step = 1; step <= kStepsOfAPull; ++step) {
        std::this_thread::sleep_for(kStep);
        moveTo(from + (to - from) * step / kStepsOfAPull);
    }
    std::this_thread::sleep_for(kBeforeLettingGo);
}

void Mouse::release() {
    fakeButton(XCB_BUTTON_RELEASE, Button::Left);
    settle();
}

} // namespace kestrova::test
