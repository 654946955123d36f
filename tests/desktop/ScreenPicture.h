#pragma once

#include "tests/desktop/XConnection.h"

#include <QImage>
#include <QRect>

namespace kestrova::test {

/// What a person sees on a display.
class ScreenPicture {
public:
    explicit ScreenPicture(const QByteArray& display) : m_x(display) {}

    /// The pixels of the display in `area`; null if it does not lie on the display.
    QImage of(const QRect& area) const;

private:
    XConnection m_x;
};

} // namespace kestrova::test
