#include "Kestrova/shelf/widgets/ItemRowDelegate.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "Kestrova/shelf/widgets/KeyCapsule.h"
#include "Kestrova/shelf/widgets/ThumbnailCache.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace kestrova {
namespace {

constexpr double horizontalPadding = 12;
constexpr double verticalPadding = 7;
constexpr double spacing = 12;
constexpr double rowRadius = 4;
constexpr double iconEdge = 18;
constexpr double iconRadius = 3;
constexpr double trailingWidth = 24;
constexpr double pinWidth = Symbol::edgeFor(9);
constexpr double rowTextSize = 13;
constexpr double badgeTextSize = 10;

QRectF leftSlot(QRectF& rest, double width) {
    const QRectF slot(rest.left(), rest.top(), width, rest.height());
    rest.setLeft(slot.right() + spacing);
    return slot;
}

QRectF rightSlot(QRectF& rest, double width, double gap) {
    const QRectF slot(rest.right() - width, rest.top(), width, rest.height());
    rest.setRight(slot.left() - gap);
    return slot;
}

QRectF centredSquare(const QRectF& slot, double edge) {
    return {std::round(slot.center().x() - edge / 2), std::round(slot.center().y() - edge / 2), edge, edge};
}

} // namespace

void ItemRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const auto item = m_model.item(index);
    if (!item)
        return;
    const auto row = ItemRow::of(*item, static_cast<std::size_t>(index.row()));
    const bool isSelected = item->id() == m_look.selection;
    const bool isHovered = item->id() == m_look.hovered;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? m_look.theme.selection : m_look.theme.hover);
        painter->drawRoundedRect(option.rect, rowRadius, rowRadius);
    }
    QRectF rest = QRectF(option.rect).adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    paintIcon(*painter, leftSlot(rest, iconEdge), row, index);
    paintTrailingSlot(*painter, rightSlot(rest, trailingWidth, spacing), row, isSelected ? m_look.peek : 0);
    const double pin = pinShown ? pinShown(item->id(), row.isPinned) : (row.isPinned ? 1.0 : 0.0);
    if (pin > 0) {
        const auto slot = rightSlot(rest, pinWidth, spacing / 2);
        painter->setOpacity(pin);
        Symbol(QStringLiteral("pin.fill")).paint(*painter, slot, pinWidth, m_look.theme.text);
        painter->setOpacity(1);
    }
    const auto font = interfaceFont(rowTextSize);
    painter->setFont(font);
    painter->setPen(row.primaryColor.value_or(m_look.theme.text));
    painter->drawText(
        rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(row.primaryText, Qt::ElideRight, static_cast<int>(rest.width())));
    painter->restore();
}

QSize ItemRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    const int content = qMax(static_cast<int>(iconEdge), QFontMetrics(interfaceFont(rowTextSize)).height());
    // The width is the list's; only the height counts.
    return {1, content + static_cast<int>(2 * verticalPadding)};
}

void ItemRowDelegate::paintIcon(QPainter& painter, const QRectF& slot, const ItemRow& row,
                                const QModelIndex& index) const {
    const auto frame = centredSquare(slot, iconEdge);
    if (row.swatch) {
        paintSwatch(painter, frame, *row.swatch);
        return;
    }
    if (row.hasThumbnail) {
        const int edge = static_cast<int>(std::lround(iconEdge * painter.device()->devicePixelRatio()));
        const auto picture = m_thumbnails.thumbnail(m_model.item(index), edge);
        if (picture && !picture->isNull()) {
            paintPicture(painter, frame, *picture);
            return;
        }
    }
    Symbol(row.symbol).paint(painter, frame, Symbol::edgeFor(rowTextSize), m_look.theme.symbol);
}

void ItemRowDelegate::paintPicture(QPainter& painter, const QRectF& frame, const QImage& picture) const {
    QPainterPath shape;
    shape.addRoundedRect(frame, iconRadius, iconRadius);
    painter.save();
    painter.setClipPath(shape, Qt::IntersectClip);
    painter.drawImage(frame, picture);
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_look.theme.hairline, 0.5));
    painter.drawRoundedRect(frame, iconRadius, iconRadius);
}

void ItemRowDelegate::paintSwatch(QPainter& painter, const QRectF& frame, const QColor& color) const {
    painter.setBrush(color);
    painter.setPen(QPen(m_look.theme.hairline, 0.5));
    painter.drawRoundedRect(frame.adjusted(0.25, 0.25, -0.25, -0.25), iconRadius, iconRadius);
}

void ItemRowDelegate::paintTrailingSlot(QPainter& painter, const QRectF& slot, const ItemRow& row,
                                        double peek) const {
    if (row.quickPasteIndex && peek < 1) {
        painter.setOpacity(1 - peek);
        const auto font = interfaceFont(badgeTextSize);
        const auto digit = QString::number(*row.quickPasteIndex);
        const double digitWidth = QFontMetricsF(font).horizontalAdvance(digit);
        constexpr double symbolEdge = Symbol::edgeFor(badgeTextSize);
        const QRectF symbolFrame(slot.right() - digitWidth - 2 - symbolEdge, slot.top(), symbolEdge,
                                 slot.height());
        Symbol(QStringLiteral("command")).paint(painter, symbolFrame, symbolEdge, m_look.theme.secondaryText);
        painter.setFont(font);
        painter.setPen(m_look.theme.secondaryText);
        painter.drawText(QRectF(slot.right() - digitWidth, slot.top(), digitWidth + 1, slot.height()),
                         Qt::AlignVCenter | Qt::AlignLeft, digit);
        painter.setOpacity(1);
    }
    KeyCapsule{{QStringLiteral("command")}, QStringLiteral("K")}.paint(painter, slot.center(), m_look.theme,
                                                                       peek);
}

} // namespace kestrova
