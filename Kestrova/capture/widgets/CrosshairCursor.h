#pragma once

#include <QCursor>
#include <QPixmap>

#include <map>

namespace kestrova {

/// The pointer of the area mode, sharp on displays of every scale. Main thread only.
class CrosshairCursor {
public:
    /// For a display of that many pixels a point. Drawn once for each scale.
    const QCursor& forScale(double scale);

    /// Its pixels on such a display.
    static QPixmap picture(double scale);

private:
    std::map<double, QCursor> m_cursors;
};

} // namespace kestrova
