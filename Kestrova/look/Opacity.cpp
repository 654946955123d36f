#include "Kestrova/look/Opacity.h"

#include <QGraphicsOpacityEffect>
#include <QWidget>

namespace kestrova {

void setOpacity(QWidget& widget, double opacity) {
    if (opacity >= 1) {
        widget.setGraphicsEffect(nullptr);
        return;
    }
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(widget.graphicsEffect());
    if (!effect) {
        effect = new QGraphicsOpacityEffect;
        widget.setGraphicsEffect(effect);
    }
    effect->setOpacity(opacity);
}

} // namespace kestrova
