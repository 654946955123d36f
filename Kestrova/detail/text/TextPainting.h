#pragma once

class QPainter;
class QPalette;
class QRect;

namespace kestrova {

class TextScroll;
struct TextSelection;

/// Draws what the viewport shows of a text, with what is marked. `clip` is the part of the viewport to draw.
void paintText(QPainter& painter, TextScroll& scroll, const TextSelection& selection, const QPalette& palette,
               const QRect& clip);

} // namespace kestrova
