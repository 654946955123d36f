#include "Kestrova/shelf/widgets/SearchField.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/widgets/SymbolButton.h"

#include <QFocusEvent>
#include <QInputMethodEvent>
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
constexpr auto focusDuration = 150ms;

bool tellsOfTheControl(Qt::FocusReason reason) {
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

} // namespace

SearchLineEdit::SearchLineEdit(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setTextMargins(-2, 0, 0, 0);
    setPlaceholderText(QStringLiteral("검색…"));
    setAccessibleName(QStringLiteral("검색"));
    connect(this, &QLineEdit::textChanged, [this] { tellOfQuery(); });
}

QString SearchLineEdit::query() const {
    auto query = text();
    query.insert(cursorPosition(), m_composed);
    return query;
}

void SearchLineEdit::show(const QString& query) {
    if (query == this->query())
        return;
    m_isSilent = true;
    m_composed.clear();
    const int cursor = cursorPosition();
    const bool wasAtEnd = cursor == text().size();
    setText(query);
    if (!wasAtEnd)
        setCursorPosition(qMin(cursor, static_cast<int>(query.size())));
    m_isSilent = false;
    m_toldQuery = query;
}

void SearchLineEdit::inputMethodEvent(QInputMethodEvent* event) {
    // One event may end a composition and begin another; what lies between was never the query.
    m_isSilent = true;
    m_composed = event->preeditString();
    QLineEdit::inputMethodEvent(event);
    m_isSilent = false;
    tellOfQuery();
}

void SearchLineEdit::tellOfQuery() {
    if (m_isSilent || std::exchange(m_toldQuery, query()) == m_toldQuery)
        return;
    if (onQueryChange)
        onQueryChange(m_toldQuery);
}

void SearchLineEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (tellsOfTheControl(event->reason()) && onFocusChange)
        onFocusChange(true);
}

void SearchLineEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (tellsOfTheControl(event->reason()) && onFocusChange)
        onFocusChange(false);
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

void SearchField::resizeEvent(QResizeEvent*) {
    const int edge = height();
    const int left = horizontalPadding + static_cast<int>(Symbol::edgeFor(symbolSize)) + spacing;
    m_clearButton->setGeometry(width() - edge, 0, edge, edge);
    m_lineEdit->setGeometry(left, verticalPadding / 2, width() - edge - left, height() - verticalPadding);
}

void SearchField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double focus = m_focus.value();
    const QRectF plate = QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75);
    painter.setPen(Qt::NoPen);
    painter.setOpacity(1 - focus);
    painter.setBrush(m_theme.field);
    painter.drawRoundedRect(plate, radius, radius);
    painter.setOpacity(focus);
    painter.setBrush(m_theme.focusedField);
    painter.setPen(QPen(m_theme.focusedFieldRing, 1.5));
    painter.drawRoundedRect(plate, radius, radius);
    painter.setOpacity(1);
    constexpr double edge = Symbol::edgeFor(symbolSize);
    Symbol(QStringLiteral("magnifyingglass"))
        .paint(painter, QRectF(horizontalPadding, 0, edge, height()), edge, m_theme.symbol);
}

void SearchField::mousePressEvent(QMouseEvent*) {
    m_lineEdit->setFocus(Qt::MouseFocusReason);
}

} // namespace kestrova
