#include "Kestrova/shelf/widgets/ColorSwatch.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Symbol.h"

#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int discEdge = 24;
constexpr double hoveredGrowth = 2;
constexpr double symbolSize = 12;
constexpr double ringGap = 2;
constexpr double ringWidth = 2;
constexpr int edge = discEdge + 2 * ColorSwatch::overhang;
constexpr double focusRadius = 7;

QRectF centred(const QRectF& frame, double size) {
    QRectF square(0, 0, size, size);
    square.moveCenter(frame.center());
    return square;
}

} // namespace

ColorSwatch::ColorSwatch(const CollectionEditSheet::Swatch& swatch, QWidget* parent)
    : QRadioButton(parent),
      m_swatch(swatch),
      m_hover(120ms, easing(AnimationTiming::easeOut), [this] { update(); }) {
    setAccessibleName(swatch.name);
    setToolTip(swatch.name);
    // Whoever chooses a colour with the pointer goes on typing the name.
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(edge, edge);
    connect(this, &QRadioButton::clicked, [this] {
        if (onTap)
            onTap();
    });
}

void ColorSwatch::render(bool isChosen, const ShelfTheme& theme) {
    setChecked(isChosen);
    m_theme = theme;
    update();
}

QSize ColorSwatch::sizeHint() const {
    return {edge, edge};
}

void ColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto disc = centred(rect(), discEdge + hoveredGrowth * m_hover.value());
    const auto color = m_swatch.hex ? parseColor(*m_swatch.hex) : std::nullopt;
    painter.setPen(QPen(m_theme.hairline, 0.5));
    painter.setBrush(color ? qColor(*color) : m_theme.chip);
    painter.drawEllipse(disc);
    if (!color) {
        constexpr double symbolEdge = Symbol::edgeFor(symbolSize);
        Symbol(QStringLiteral("slash.circle")).paint(painter, rect(), symbolEdge, m_theme.symbol);
    }
    painter.setBrush(Qt::NoBrush);
    if (isChecked()) {
        painter.setPen(QPen(m_theme.activeSymbol, ringWidth));
        painter.drawEllipse(centred(rect(), discEdge + 2 * ringGap + ringWidth));
    }
    if (hasFocus()) {
        painter.setPen(QPen(m_theme.accent, 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), focusRadius, focusRadius);
    }
}

void ColorSwatch::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
        if (onStep)
            onStep(event->key());
        break;
    default:
        QRadioButton::keyPressEvent(event);
    }
}

void ColorSwatch::enterEvent(QEnterEvent* event) {
    QRadioButton::enterEvent(event);
    m_hover.glideTo(true);
    tellHover(true);
}

void ColorSwatch::leaveEvent(QEvent* event) {
    QRadioButton::leaveEvent(event);
    m_hover.glideTo(false);
    tellHover(false);
}

void ColorSwatch::hideEvent(QHideEvent* event) {
    QRadioButton::hideEvent(event);
    // A window that goes from under the pointer tells nobody that the pointer has left.
    m_hover.jumpTo(false);
    tellHover(false);
}

void ColorSwatch::tellHover(bool isHovered) {
    if (std::exchange(m_toldHover, isHovered) != isHovered && onHover)
        onHover(isHovered);
}

void ColorSwatch::focusInEvent(QFocusEvent* event) {
    QRadioButton::focusInEvent(event);
    if (onFocus)
        onFocus();
}

bool ColorSwatch::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void ColorSwatch::nextCheckState() {
    // The state decides which one is chosen.
}

} // namespace kestrova
