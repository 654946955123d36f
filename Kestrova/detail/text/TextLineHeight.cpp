#include "Kestrova/detail/text/TextLineHeight.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr double linesPerSize = 1.4;

} // namespace

int textLineHeight(const QFont& font) {
    const double own = QFontMetricsF(font).lineSpacing();
    return static_cast<int>(std::ceil(std::max(own, linesPerSize * QFontInfo(font).pixelSize())));
}

} // namespace kestrova
