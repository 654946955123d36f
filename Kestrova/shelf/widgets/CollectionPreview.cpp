#include "Kestrova/shelf/widgets/CollectionPreview.h"

#include "Kestrova/detail/QtColor.h"
#include "Kestrova/look/Contrast.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace kestrova {
namespace {

constexpr double textSize = 13;
constexpr int spacing = 6;
constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 4;
constexpr double radius = 7;
constexpr double leastContrast = 3;
constexpr int leastTextWidth = 40;

int symbolEdge() {
    return interfaceLength(Symbol::edgeFor(textSize));
}

QFont nameFont() {
    return interfaceFont(textSize);
}

} // namespace

CollectionPreview::CollectionPreview(QWidget* parent) : QWidget(parent) {
    setAccessibleRole(*this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void CollectionPreview::render(const CollectionEditSheet& sheet, const ShelfTheme& theme) {
    m_name = sheet.previewName();
    const auto color = sheet.previewColor();
    m_color = color ? qColor(*color) : theme.accent;
    m_theme = theme;
    setSpokenName(*this, m_name);
    updateGeometry();
    update();
}

QSize CollectionPreview::sizeHint() const {
    const QFontMetrics metrics(nameFont());
    return {2 * horizontalPadding + symbolEdge() + spacing + metrics.horizontalAdvance(m_name) + 1,
            qMax(symbolEdge(), metrics.height()) + 2 * verticalPadding};
}

QSize CollectionPreview::minimumSizeHint() const {
    return {2 * horizontalPadding + symbolEdge() + spacing + leastTextWidth, sizeHint().height()};
}

void CollectionPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.chip);
    painter.drawRoundedRect(rect(), radius, radius);
    const auto inner = QRectF(rect()).adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    // White on white would leave a gap.
    const auto color = withContrast(m_color, blended(m_theme.chip, m_theme.card), leastContrast);
    const double edge = symbolEdge();
    Symbol(QStringLiteral("folder"))
        .paint(painter, {inner.left(), inner.top(), edge, inner.height()}, edge, color);
    const auto text = inner.adjusted(edge + spacing, 0, 0, 0);
    const auto font = nameFont();
    painter.setFont(font);
    painter.setPen(m_theme.text);
    painter.drawText(
        text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(m_name, Qt::ElideRight, static_cast<int>(std::ceil(text.width()))));
}

} // namespace kestrova
