#pragma once

#include "Kestrova/capture/SelectionOverlayDrawing.h"

#include <QFont>
#include <QSizeF>

class QPainter;
class QString;

namespace kestrova {

/// The texts of the overlays in the desktop's font, as it is when the object is made.
class OverlayText {
public:
    OverlayText();

    /// One line's, in points.
    QSizeF size(const QString& text, OverlayFont font) const;
    /// In white; `topLeft` in the painter's coordinates.
    void draw(QPainter& painter, QPointF topLeft, const QString& text, OverlayFont font) const;

private:
    const QFont& qtFont(OverlayFont font) const;

    QFont m_medium12;
    QFont m_medium11;
};

} // namespace kestrova
