#include "Kestrova/capture/widgets/HUDView.h"

#include "Kestrova/capture/widgets/HUDViewAccessible.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Outline.h"
#include "Kestrova/look/Symbol.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

constexpr double textSize = 12;
constexpr double symbolSize = 10;
constexpr double spacing = 6;
constexpr double horizontalPadding = 12;
constexpr double verticalPadding = 6;
// The shelf's.
constexpr double cornerRadius = 12;

const QColor& ground() {
    static const QColor colour = QColor::fromRgbF(0.12F, 0.12F, 0.14F);
    return colour;
}
constexpr float groundOpacity = 0.92F;

double symbolEdge() {
    return interfaceLength(Symbol::edgeFor(symbolSize));
}

struct Content {
    QString symbol;
    QString text;
};

const Content& contentOf(HUDEvent event) {
    static const std::array<Content, 4> all{{{u"doc.on.doc.fill"_s, u"복사 완료"_s},
                                             {u"doc.on.clipboard.fill"_s, u"붙여넣기 완료"_s},
                                             {u"viewfinder"_s, u"캡처 완료"_s},
                                             {u"pencil.and.outline"_s, u"수정본 저장"_s}}};
    return all[static_cast<std::size_t>(event)];
}

} // namespace

HUDView::HUDView(QWidget* parent) : QWidget(parent) {
    HUDViewAccessible::install();
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    adoptFont();
    setAccessibleName(text(m_event));
}

QString HUDView::text(HUDEvent event) {
    return contentOf(event).text;
}

QString HUDView::symbolName(HUDEvent event) {
    return contentOf(event).symbol;
}

void HUDView::setEvent(HUDEvent event) {
    if (std::exchange(m_event, event) != event) {
        setAccessibleName(text(event));
        updateGeometry();
        update();
    }
    if (!isVisible())
        return;
    announce(QAccessible::Alert);
    // Screen readers that know no alerts read notifications that come up, as this one did for the toolkit
    // when it was first shown.
    announce(QAccessible::ObjectShow);
}

void HUDView::announce(QAccessible::Event type) {
    QAccessibleEvent event(this, type);
    QAccessible::updateAccessibility(&event);
}

void HUDView::setGround(Ground ground) {
    if (std::exchange(m_ground, ground) != ground)
        update();
}

void HUDView::adoptFont() {
    setFont(interfaceFont(textSize, QFont::Medium));
}

QSize HUDView::sizeHint() const {
    const QFontMetricsF metrics(font());
    const double width = symbolEdge() + spacing + metrics.horizontalAdvance(text(m_event));
    const double height = std::max(symbolEdge(), metrics.height());
    return {static_cast<int>(std::ceil(width + 2 * horizontalPadding)),
            static_cast<int>(std::ceil(height + 2 * verticalPadding))};
}

QPainterPath HUDView::shape(const QRectF& rect) {
    return continuousRectangle(rect, cornerRadius);
}

void HUDView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    auto fill = ground();
    if (m_ground == Ground::translucent)
        fill.setAlphaF(groundOpacity);
    // Where nothing is blended the window itself has the shape.
    if (m_ground == Ground::translucent)
        painter.fillPath(shape(rect()), fill);
    else
        painter.fillRect(rect(), fill);
    const QRectF content = QRectF(rect()).adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    const QRectF symbolFrame(content.left(), content.top(), symbolEdge(), content.height());
    Symbol(symbolName(m_event)).paint(painter, symbolFrame, symbolEdge(), Qt::white);
    painter.setPen(Qt::white);
    painter.setFont(font());
    painter.drawText(content.adjusted(symbolEdge() + spacing, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text(m_event));
}

void HUDView::mousePressEvent(QMouseEvent* event) {
    // Accepted, so that the release comes here too.
    event->accept();
}

void HUDView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        tap();
}

void HUDView::tap() {
    // The callback may set another one within the call.
    if (const auto kept = onTap)
        kept();
}

bool HUDView::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::ApplicationFontChange:
        adoptFont();
        break;
    case QEvent::Show:
        announce(QAccessible::Alert);
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

} // namespace kestrova
