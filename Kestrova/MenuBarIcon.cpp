#include "Kestrova/MenuBarIcon.h"

#include <QPainter>
#include <QSvgRenderer>

#include <array>

namespace kestrova {
namespace {

constexpr std::array sizesPx{16, 22, 24, 32, 48};

} // namespace

MenuBarIcon::MenuBarIcon() {
    QSvgRenderer drawing(QStringLiteral(":/MenuBarIcon.svg"));
    for (const int size : sizesPx) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        drawing.render(&painter);
        m_pictures.push_back(picture);
    }
}

QIcon MenuBarIcon::icon(double opacity) const {
    QIcon icon;
    for (const auto& full : m_pictures) {
        QPixmap faint(full.size());
        faint.fill(Qt::transparent);
        QPainter painter(&faint);
        painter.setOpacity(opacity);
        painter.drawPixmap(0, 0, full);
        painter.end();
        icon.addPixmap(faint);
    }
    return icon;
}

} // namespace kestrova
