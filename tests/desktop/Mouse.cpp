#include "tests/desktop/Mouse.h"

#include <xcb/xtest.h>

namespace kestrova::test {

void Mouse::moveTo(QPoint place) {
    xcb_test_fake_input(m_x.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_x.root(),
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
    const XReply<xcb_query_pointer_reply_t> carriedOut(
        xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
}

void Mouse::click(QPoint place, Button button) {
    moveTo(place);
    const auto number = static_cast<std::uint8_t>(button);
    for (const std::uint8_t type : {std::uint8_t{XCB_BUTTON_PRESS}, std::uint8_t{XCB_BUTTON_RELEASE}})
        xcb_test_fake_input(m_x.get(), type, number, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    const XReply<xcb_query_pointer_reply_t> carriedOut(
        xcb_query_pointer_reply(m_x.get(), xcb_query_pointer(m_x.get(), m_x.root()), nullptr));
}

} // namespace kestrova::test
