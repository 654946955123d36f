#include "Kestrova/detail/widgets/Checkerboard.h"

#include <QPainter>
#include <QPainterPath>

namespace kestrova {
namespace {

constexpr double squareEdge = 8;

} // namespace

void paintCheckerboard(QPainter& painter, const QPainterPath& shape) {
    const QColor white(255, 255, 255);
    const QColor grey(204, 204, 204);
    const auto frame = shape.boundingRect();
    QPainterPath greySquares;
    bool isOddRow = false;
    for (double y = frame.top(); y < frame.bottom(); y += squareEdge, isOddRow = !isOddRow)
        for (double x = frame.left() + (isOddRow ? squareEdge : 0); x < frame.right(); x += 2 * squareEdge)
            greySquares.addRect(x, y, squareEdge, squareEdge);
    painter.fillPath(shape, white);
    painter.fillPath(greySquares.intersected(shape), grey);
}

} // namespace kestrova
