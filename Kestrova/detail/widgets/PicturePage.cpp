#include "Kestrova/detail/widgets/PicturePage.h"

#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestrova {

PicturePage::PicturePage(QWidget* parent) : QWidget(parent) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleRole(*this, QAccessible::Graphic);
}

void PicturePage::show(const QImage& picture) {
    m_picture = picture;
    setAccessibleName(picture.isNull() ? QString() : QStringLiteral("이미지"));
    updateGeometry();
    update();
}

QSizeF PicturePage::sizeWithin(double width) const {
    if (m_picture.isNull())
        return {};
    const auto size = QSizeF(m_picture.size()) / devicePixelRatioF();
    return size * std::min(1.0, width / size.width());
}

int PicturePage::heightForWidth(int width) const {
    return static_cast<int>(std::ceil(sizeWithin(width).height()));
}

void PicturePage::paintEvent(QPaintEvent* event) {
    if (m_picture.isNull())
        return;
    QRectF frame({}, sizeWithin(width()));
    frame.moveCenter(QRectF(rect()).center());
    // On whole device pixels it stays as sharp as it is.
    const double ratio = devicePixelRatioF();
    frame.moveTopLeft({std::round(frame.left() * ratio) / ratio, std::round(frame.top() * ratio) / ratio});
    const auto seen = frame & QRectF(event->rect());
    const double scale = m_picture.width() / frame.width();
    const QRectF source((seen.topLeft() - frame.topLeft()) * scale, seen.size() * scale);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale != ratio);
    painter.drawImage(seen, m_picture, source);
}

} // namespace kestrova
