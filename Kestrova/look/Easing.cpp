#include "Kestrova/look/Easing.h"

namespace kestrova {

QEasingCurve::Type easing(AnimationTiming timing) {
    switch (timing) {
    case AnimationTiming::easeIn:
        return QEasingCurve::InQuad;
    case AnimationTiming::easeOut:
        return QEasingCurve::OutQuad;
    case AnimationTiming::easeInEaseOut:
        return QEasingCurve::InOutQuad;
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
