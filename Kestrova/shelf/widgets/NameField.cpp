#include "Kestrova/shelf/widgets/NameField.h"

#include "Kestrova/look/InterfaceFont.h"

#include <QPainter>

namespace kestrova {
namespace {

constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 6;
constexpr double radius = 7;
constexpr double ringWidth = 1.5;

} // namespace

NameField::NameField(QWidget* parent) : ComposedLineEdit(parent) {
    setTextMargins(horizontalPadding, verticalPadding, horizontalPadding, verticalPadding);
}

void NameField::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    setFont(interfaceFont(13));
    setPalette(theme.palette());
    update();
}

void NameField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isFocused = hasFocus();
        painter.setBrush(isFocused ? m_theme.focusedField : m_theme.field);
        painter.setPen(isFocused ? QPen(m_theme.focusedFieldRing, ringWidth) : QPen(m_theme.border, 1));
        constexpr double inset = ringWidth / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    }
    ComposedLineEdit::paintEvent(event);
}

} // namespace kestrova
