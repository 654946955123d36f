#include "Kestrova/detail/widgets/ColorFormRow.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/SymbolButton.h"

#include <QFontMetrics>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr double textSize = 13;
constexpr double labelSize = 12;
constexpr double labelWidth = 40;
constexpr int spacing = 12;
constexpr double buttonEdge = 26;
constexpr double symbolSize = 12;

} // namespace

ColorFormRow::ColorFormRow(QString label, QWidget* parent)
    : QWidget(parent),
      m_label(std::move(label)),
      m_copy(new SymbolButton(m_label + QStringLiteral(" 복사"), symbolSize, this)) {
    setAccessibleRole(*this, QAccessible::StaticText);
    m_copy->setToolTip(m_copy->accessibleName());
    m_copy->onTap = [this] { onCopy(m_text); };
}

void ColorFormRow::render(const QString& text, const ShelfTheme& theme) {
    m_copy->render(QStringLiteral("doc.on.doc"), true, theme);
    if (text == m_text && theme == m_theme)
        return;
    m_text = text;
    m_theme = theme;
    setSpokenName(*this, m_label + QStringLiteral(": ") + text);
    update();
}

int ColorFormRow::heightHint() {
    return interfaceLength(buttonEdge);
}

void ColorFormRow::resizeEvent(QResizeEvent*) {
    const int edge = heightHint();
    m_copy->setGeometry(width() - edge, (height() - edge) / 2, edge, edge);
}

void ColorFormRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(interfaceFont(labelSize));
    painter.setPen(m_theme.secondaryText);
    const int textLeft = interfaceLength(labelWidth) + spacing;
    painter.drawText(QRect(0, 0, textLeft, height()), Qt::AlignLeft | Qt::AlignVCenter, m_label);
    const auto font = fixedInterfaceFont(textSize);
    const QRect room(textLeft, 0, m_copy->x() - spacing - textLeft, height());
    painter.setFont(font);
    painter.setPen(m_theme.text);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(m_text, Qt::ElideMiddle, room.width()));
}

} // namespace kestrova
