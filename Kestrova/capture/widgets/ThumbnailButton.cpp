#include "Kestrova/capture/widgets/ThumbnailButton.h"

#include "Kestrova/look/Symbol.h"

#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr float discOpacity = 0.65F;
constexpr float discOpacityHovered = 0.85F;

} // namespace

ThumbnailButton::ThumbnailButton(const QString& symbol, double symbolSize, const QString& help,
                                 QWidget* parent)
    : QAbstractButton(parent), m_symbol(symbol), m_symbolSize(symbolSize) {
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(diameter, diameter);
    setToolTip(help);
    setAccessibleName(help);
    setTakesClicks(false);
}

void ThumbnailButton::setOpacity(double opacity) {
    if (std::exchange(m_opacity, opacity) != opacity)
        update();
}

void ThumbnailButton::setTakesClicks(bool takes) {
    setAttribute(Qt::WA_TransparentForMouseEvents, !takes);
    if (!takes)
        setHovered(false);
}

void ThumbnailButton::setHovered(bool isHovered) {
    if (std::exchange(m_isHovered, isHovered) != isHovered)
        update();
}

void ThumbnailButton::enterEvent(QEnterEvent*) {
    setHovered(true);
}

void ThumbnailButton::leaveEvent(QEvent*) {
    setHovered(false);
}

void ThumbnailButton::hideEvent(QHideEvent*) {
    setHovered(false);
}

void ThumbnailButton::paintEvent(QPaintEvent*) {
    if (m_opacity <= 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, m_isHovered ? discOpacityHovered : discOpacity));
    painter.drawEllipse(rect());
    Symbol(m_symbol).paint(painter, rect(), Symbol::edgeFor(m_symbolSize), Qt::white);
}

} // namespace kestrova
