#include "Kestrova/detail/widgets/EditorGround.h"

#include <QHBoxLayout>
#include <QPainter>

namespace kestrova {
namespace {

constexpr double radius = 7;
constexpr double borderWidth = 0.5;
constexpr int padding = 10;
// The scroll bar has room of its own.
constexpr int trailingPadding = 2;

} // namespace

void EditorGround::setEditor(QWidget& editor) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, trailingPadding, padding);
    row->addWidget(&editor);
}

void EditorGround::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    update();
}

void EditorGround::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double inset = borderWidth / 2;
    painter.setBrush(m_theme.field);
    painter.setPen(QPen(m_theme.hairline, borderWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace kestrova
