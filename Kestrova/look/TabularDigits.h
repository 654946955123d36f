#pragma once

#include <QRectF>
#include <QString>

class QFont;
class QPainter;

namespace kestrova {

/// Digits that are all equally wide, whatever the font: what stands beside them does not move as they change.
/// Other characters have their own width.
double tabularWidth(const QString& text, const QFont& font);
/// In the painter's font, from the left end of the baseline on.
void drawTabular(QPainter& painter, const QPointF& baseline, const QString& text);
/// In the painter's font, in the middle of the height of `frame`; they end at its right edge.
void drawTabularAtRight(QPainter& painter, const QRectF& frame, const QString& digits);

} // namespace kestrova
