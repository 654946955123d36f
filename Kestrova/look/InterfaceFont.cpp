#include "Kestrova/look/InterfaceFont.h"

#include <QApplication>
#include <QFontDatabase>

namespace kestrova {
namespace {

constexpr double ordinarySize = 13;

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
