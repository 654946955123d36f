#include "Kestrova/shelf/controls/SheetButton.h"

#include "Kestrova/look/InterfaceFont.h"

#include <QFontMetrics>
#include <QPainter>

namespace kestrova {
namespace {

constexpr int horizontalPadding = 16;
constexpr int verticalPadding = 7;
constexpr int leastWidth = 76;
constexpr double radius = 7;
constexpr double focusWidth = 2;
constexpr double focusGap = SheetButton::overhang - focusWidth;

} // namespace

SheetButton::SheetButton(Role role, QWidget* parent) : QPushButton(parent) {
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true);
    setDefault(role == Role::defaultAction);
    connect(this, &QPushButton::clicked, [this] {
        if (onTap)
            onTap();
    });
}

void SheetButton::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    setFont(interfaceFont(13, QFont::Medium));
    updateGeometry();
    update();
}

QSize SheetButton::sizeHint() const {
    const QFontMetrics metrics(font());
    const int plateWidth = qMax(leastWidth, metrics.horizontalAdvance(text()) + 2 * horizontalPadding);
    return {plateWidth + 2 * overhang, metrics.height() + 2 * verticalPadding + 2 * overhang};
}

void SheetButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto plate = QRectF(rect()).adjusted(overhang, overhang, -overhang, -overhang);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDefault() ? m_theme.marking : m_theme.chip);
    painter.drawRoundedRect(plate, radius, radius);
    if (underMouse() || isDown()) {
        painter.setBrush(isDown() ? m_theme.selectedChip : m_theme.hover);
        painter.drawRoundedRect(plate, radius, radius);
    }
    if (hasFocus()) {
        constexpr double inset = focusWidth / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(m_theme.accent, focusWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius + focusGap,
                                radius + focusGap);
    }
    painter.setFont(font());
    painter.setPen(isDefault() ? QColor(Qt::white) : m_theme.text);
    painter.drawText(plate, Qt::AlignCenter, text());
}

} // namespace kestrova
