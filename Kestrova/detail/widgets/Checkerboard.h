#pragma once

class QPainter;
class QPainterPath;

namespace kestrova {

/// Fills `shape` with the light squares that stand for what is seen through a translucent colour. They are
/// the same in every theme, so that a colour looks alike in each.
void paintCheckerboard(QPainter& painter, const QPainterPath& shape);

} // namespace kestrova
