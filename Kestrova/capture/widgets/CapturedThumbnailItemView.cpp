#include "Kestrova/capture/widgets/CapturedThumbnailItemView.h"

#include "Kestrova/capture/widgets/ThumbnailButton.h"
#include "Kestrova/capture/widgets/ThumbnailTile.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int hoverPadding = 6;
constexpr int hoverSpacing = 6;
constexpr auto hoverDuration = 120ms;

constexpr double pencilSize = 10;
constexpr double xmarkSize = 9;

/// The callback may let go of whoever holds it.
void tell(const std::function<void()>& callback) {
    if (const auto told = callback)
        told();
}

} // namespace

CapturedThumbnailItemView::CapturedThumbnailItemView(ThumbnailEntry entry, QWidget* parent)
    : QAbstractButton(parent),
      m_entry(std::move(entry)),
      m_editButton(new ThumbnailButton(QStringLiteral("pencil"), pencilSize, QStringLiteral("편집"), this)),
      m_closeButton(new ThumbnailButton(QStringLiteral("xmark"), xmarkSize, QStringLiteral("닫기"), this)),
      m_hoverLayer(hoverDuration, QEasingCurve::InOutQuad, [this] { showButtons(); }) {
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(ThumbnailTile::size);
    setMouseTracking(true);
    setAccessibleName(m_entry.suggestedName);
    const int top = hoverPadding;
    const int closeLeft = width() - hoverPadding - ThumbnailButton::diameter;
    m_closeButton->move(closeLeft, top);
    m_editButton->move(closeLeft - hoverSpacing - ThumbnailButton::diameter, top);
    connect(this, &QAbstractButton::clicked, [this] { tell(onClick); });
    connect(m_editButton, &QAbstractButton::clicked, [this] { tell(onEdit); });
    connect(m_closeButton, &QAbstractButton::clicked, [this] { tell(onClose); });
}

bool CapturedThumbnailItemView::editButtonHover() const {
    return m_editButton->isHovered();
}

bool CapturedThumbnailItemView::closeButtonHover() const {
    return m_closeButton->isHovered();
}

void CapturedThumbnailItemView::hover(QPoint mouse) {
    m_hovering = true;
    for (auto* const button : {m_editButton, m_closeButton}) {
        button->setTakesClicks(true);
        button->setHovered(button->geometry().contains(mouse));
    }
    m_hoverLayer.glideTo(true);
}

void CapturedThumbnailItemView::endHover() {
    m_hovering = false;
    m_editButton->setTakesClicks(false);
    m_closeButton->setTakesClicks(false);
    m_hoverLayer.glideTo(false);
}

void CapturedThumbnailItemView::setTile(const QPixmap& tile) {
    m_tile = tile;
    update();
}

void CapturedThumbnailItemView::setOpacity(double opacity) {
    if (std::exchange(m_opacity, opacity) == opacity)
        return;
    update();
    showButtons();
}

void CapturedThumbnailItemView::showButtons() {
    m_editButton->setOpacity(m_opacity * m_hoverLayer.value());
    m_closeButton->setOpacity(m_opacity * m_hoverLayer.value());
}

void CapturedThumbnailItemView::tellOfMouse(QPoint mouse) const {
    if (onMouse)
        onMouse(mouse);
}

void CapturedThumbnailItemView::enterEvent(QEnterEvent* event) {
    tellOfMouse(event->position().toPoint());
}

void CapturedThumbnailItemView::leaveEvent(QEvent*) {
    tell(onMouseLeft);
}

void CapturedThumbnailItemView::mousePressEvent(QMouseEvent* event) {
    // Accepted, whichever button it is: below lies nothing that wants it.
    event->accept();
    if (event->button() == Qt::LeftButton && m_isResting)
        m_pressedAt = event->position().toPoint();
}

void CapturedThumbnailItemView::mouseMoveEvent(QMouseEvent* event) {
    // Where tiles have moved, the toolkit may take this one for the one that the mouse has been on.
    if (event->buttons() == Qt::NoButton)
        tellOfMouse(event->position().toPoint());
    if (!m_pressedAt || !event->buttons().testFlag(Qt::LeftButton))
        return;
    const auto way = event->position().toPoint() - *m_pressedAt;
    if (way.manhattanLength() < QApplication::startDragDistance())
        return;
    // A drag is no click, wherever it ends.
    const auto from = *std::exchange(m_pressedAt, std::nullopt);
    if (onDrag)
        onDrag(from);
}

void CapturedThumbnailItemView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && std::exchange(m_pressedAt, std::nullopt))
        click();
}

void CapturedThumbnailItemView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    painter.drawPixmap(rect(), m_tile);
}

} // namespace kestrova
