#include "Kestrova/look/InterfaceFont.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr double ordinarySize = 13;
// Desktops have text of 10 or 11 points; up to there lengths stay as they are.
constexpr double pixelsOfOrdinarySize = 15;

QFont resized(QFont font, double size) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * size / ordinarySize);
    else
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * size / ordinarySize)));
    return font;
}

} // namespace

QFont interfaceFont(double size, QFont::Weight weight) {
    auto font = resized(QApplication::font(), size);
    font.setWeight(weight);
    return font;
}

int interfaceLength(double points) {
    const double size = QFontInfo(QApplication::font()).pixelSize();
    return static_cast<int>(std::lround(points * std::max(1.0, size / pixelsOfOrdinarySize)));
}

QFont fixedInterfaceFont(double size) {
    const auto ordinary = QApplication::font();
    auto font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (ordinary.pointSizeF() > 0)
        font.setPointSizeF(ordinary.pointSizeF());
    else
        font.setPixelSize(ordinary.pixelSize());
    return resized(font, size);
}

} // namespace kestrova
