#pragma once

#include "tests/desktop/XConnection.h"

#include <QPoint>

namespace kestrova::test {

/// A person at the mouse: the server takes its clicks for real ones. Places are pixels of the display.
class Mouse {
public:
    enum class Button : std::uint8_t { Left = 1, Middle = 2, Right = 3, WheelUp = 4, WheelDown = 5 };

    explicit Mouse(const QByteArray& display) : m_x(display) {}

    void moveTo(QPoint place);
    /// Moves there, presses and lets go.
    void click(QPoint place, Button button = Button::Left);
    /// With the left button.
    void doubleClick(QPoint place);

    /// Presses the left button at `from` and holds it on the way to `to`, as slowly as a hand.
    void pull(QPoint from, QPoint to);
    /// Goes on from where it is.
    void pullOn(QPoint to);
    /// Lets the left button go.
    void release();
    void drag(QPoint from, QPoint to) {
        pull(from, to);
        release();
    }

private:
    void fakeButton(std::uint8_t type, Button button);
    void settle() const;

    XConnection m_x;
    QPoint m_place;
};

} // namespace kestrova::test
