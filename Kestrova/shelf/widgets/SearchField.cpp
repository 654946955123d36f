#include "Kestrova/shelf/widgets/SearchField.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ItemDragPayload.h"
#include "Kestrova/shelf/controls/SymbolButton.h"

#include <QDragEnterEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 8;
constexpr int spacing = 8;
constexpr double symbolSize = 14;
constexpr double textSize = 14;
constexpr double radius = 7;
constexpr double ringWidth = 1.5;
constexpr auto focusDuration = 150ms;

int symbolEdge() {
    return interfaceLength(Symbol::edgeFor(symbolSize));
}

bool editsText(const QEvent& event) {
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    constexpr auto ofChords = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const bool isText = !key.text().isEmpty() && key.text().front().isPrint();
    return !(key.modifiers() & ofChords) && (isText || key.key() == Qt::Key_Backspace);
}

} // namespace

SearchLineEdit::SearchLineEdit(QWidget* parent) : ComposedLineEdit(parent) {
    setTextMargins(-2, 0, 0, 0);
    setPlaceholderText(QStringLiteral("검색…"));
    setAccessibleName(QStringLiteral("검색"));
}

bool SearchLineEdit::event(QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ContextMenu;
    if (isKey && !isVisible() && !editsText(*event)) {
        event->accept();
        return true;
    }
    return ComposedLineEdit::event(event);
}

void SearchLineEdit::dragEnterEvent(QDragEnterEvent* event) {
    // Text from elsewhere is looked for. Our own items are on their way past the field.
    if (event->mimeData()->hasFormat(ItemDragPayload::contentType()))
        event->ignore();
    else
        ComposedLineEdit::dragEnterEvent(event);
}

SearchField::SearchField(QWidget* parent)
    : QWidget(parent),
      m_lineEdit(new SearchLineEdit(this)),
      m_clearButton(new SymbolButton(QStringLiteral("검색어 지우기"), symbolSize, this)),
      m_focus(focusDuration, QEasingCurve::OutQuad, [this] { update(); }) {
    setCursor(Qt::IBeamCursor);
    m_clearButton->setCursor(Qt::ArrowCursor);
    m_clearButton->hide();
    m_clearButton->onTap = [this] {
        if (onClear)
            onClear();
    };
}

void SearchField::render(const QString& query, bool isFocused, const ShelfTheme& theme) {
    m_lineEdit->show(query);
    m_clearButton->render(QStringLiteral("xmark.circle.fill"), false, theme);
    m_clearButton->setVisible(!query.isEmpty());
    if (std::exchange(m_theme, theme) != theme) {
        m_lineEdit->setFont(interfaceFont(textSize));
        m_lineEdit->setPalette(theme.palette());
        update();
    }
    if (isVisible())
        m_focus.glideTo(isFocused);
    else
        m_focus.jumpTo(isFocused);
}

int SearchField::smallestHeight() {
    return QFontMetrics(interfaceFont(textSize)).height() + 2 * verticalPadding;
}

void SearchField::hideEvent(QHideEvent*) {
    m_focus.finish();
}

void SearchField::resizeEvent(QResizeEvent*) {
    const int edge = height();
    const int left = horizontalPadding + symbolEdge() + spacing;
    m_clearButton->setGeometry(width() - edge, 0, edge, edge);
    m_lineEdit->setGeometry(left, verticalPadding / 2, width() - edge - left, height() - verticalPadding);
}

void SearchField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double focus = m_focus.value();
    constexpr double inset = ringWidth / 2;
    const QRectF plate = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.setPen(Qt::NoPen);
    painter.setOpacity(1 - focus);
    painter.setBrush(m_theme.field);
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setOpacity(focus);
    painter.setBrush(m_theme.focusedField);
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_theme.focusedFieldRing, ringWidth));
    painter.drawRoundedRect(plate, radius, radius);
    painter.setOpacity(1);
    const double edge = symbolEdge();
    Symbol(QStringLiteral("magnifyingglass"))
        .paint(painter, QRectF(horizontalPadding, 0, edge, height()), edge, m_theme.symbol);
}

void SearchField::mousePressEvent(QMouseEvent*) {
    m_lineEdit->setFocus(Qt::MouseFocusReason);
}

} // namespace kestrova
