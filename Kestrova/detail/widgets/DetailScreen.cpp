#include "Kestrova/detail/widgets/DetailScreen.h"

#include "Kestrova/detail/widgets/DetailBackBar.h"
#include "Kestrova/shelf/controls/SheetButton.h"

#include <QPainter>
#include <QVBoxLayout>

namespace kestrova {
namespace {

constexpr int gap = 8;
constexpr double radius = 12;

} // namespace

void DetailScreen::setParts(DetailBackBar& bar, QWidget& content, int sidePadding) {
    // What stands out around a button lies beyond the edge of the column.
    constexpr int barPadding = groundPadding - SheetButton::overhang;
    m_bar = &bar;
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, barPadding, 0, groundPadding);
    column->setSpacing(gap);
    const auto addLine = [&](QWidget& part, int besides, int stretch) {
        auto* const line = new QHBoxLayout;
        line->setContentsMargins(besides, 0, besides, 0);
        line->addWidget(&part);
        column->addLayout(line, stretch);
    };
    addLine(bar, barPadding, 0);
    addLine(content, sidePadding, 1);
}

void DetailScreen::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    m_bar->setTheme(theme);
    update();
}

void DetailScreen::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_theme.card);
    painter.setPen(QPen(m_theme.separator, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace kestrova
