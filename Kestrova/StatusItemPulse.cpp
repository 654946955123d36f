#include "Kestrova/StatusItemPulse.h"

#include <QEasingCurve>
#include <QPointF>

namespace kestrova {
namespace {

double eased(QPointF firstControl, QPointF secondControl, double progress) {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(firstControl, secondControl, {1, 1});
    return curve.valueForProgress(progress);
}

double ratio(std::chrono::milliseconds part, std::chrono::milliseconds whole) {
    return static_cast<double>(part.count()) / static_cast<double>(whole.count());
}

} // namespace

double StatusItemPulse::opacity(std::chrono::milliseconds elapsed) {
    if (elapsed >= duration)
        return 1;
    if (elapsed < fadeOut)
        return 1 - (1 - faintest) * eased({0, 0}, {0.58, 1}, ratio(elapsed, fadeOut));
    return faintest + (1 - faintest) * eased({0.42, 0}, {1, 1}, ratio(elapsed - fadeOut, fadeIn));
}

} // namespace kestrova
