#pragma once

#include <QColor>

namespace kestrova {

/// From 1, alike, to 21, black on white, by the web's accessibility guidelines. Both are taken for opaque.
double contrast(const QColor& a, const QColor& b);

/// `color` where it stands out on `ground` by that contrast; else as little lighter or darker as it takes.
QColor withContrast(const QColor& color, const QColor& ground, double least);

/// What is seen where `top` lies on an opaque colour.
QColor blended(const QColor& top, const QColor& below);

} // namespace kestrova
