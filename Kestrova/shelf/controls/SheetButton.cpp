#include "Kestrova/shelf/controls/SheetButton.h"

#include "Kestrova/look/InterfaceFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace kestrova {
namespace {

constexpr int horizontalPadding = 16;
constexpr int verticalPadding = 7;
constexpr int leastWidth = 76;
constexpr int capsuleGap = 8;
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

void SheetButton::setCapsule(const KeyCapsule& capsule) {
    m_capsule = capsule;
    updateGeometry();
    update();
}

int SheetButton::capsuleRoom() const {
    return m_capsule ? capsuleGap + static_cast<int>(std::ceil(m_capsule->size().width())) : 0;
}

QSize SheetButton::sizeHint() const {
    const QFontMetrics metrics(font());
    const int contentWidth = metrics.horizontalAdvance(text()) + capsuleRoom();
    const int plateWidth = qMax(leastWidth, contentWidth + 2 * horizontalPadding);
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
    painter.drawText(plate.adjusted(0, 0, -capsuleRoom(), 0), Qt::AlignCenter, text());
    if (!m_capsule)
        return;
    const double contentWidth = QFontMetrics(font()).horizontalAdvance(text()) + capsuleRoom();
    const double right = plate.center().x() + contentWidth / 2;
    m_capsule->paint(painter, {right - m_capsule->size().width() / 2, plate.center().y()}, m_theme);
}

} // namespace kestrova
