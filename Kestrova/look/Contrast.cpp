#include "Kestrova/look/Contrast.h"

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor blended(const QColor& top, const QColor& below) {
    const float alpha = top.alphaF();
    const auto mix = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(mix(top.redF(), below.redF()), mix(top.greenF(), below.greenF()),
                            mix(top.blueF(), below.blueF()));
}

QColor withContrast(const QColor& color, const QColor& ground, double least) {
    constexpr int steps = 20;
    const QColor end = contrast(Qt::white, ground) > contrast(Qt::black, ground) ? Qt::white : Qt::black;
    auto found = blended(color, ground);
    for (int step = 1; step <= steps && contrast(found, ground) < least; ++step) {
        auto share = end;
        share.setAlphaF(static_cast<float>(step) / steps);
        found = blended(share, color);
    }
    return found;
}

} // namespace kestrova
