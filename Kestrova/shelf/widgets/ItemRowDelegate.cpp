#include "Kestrova/shelf/widgets/ItemRowDelegate.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "Kestrova/shelf/widgets/ThumbnailCache.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr double horizontalPadding = 12;
constexpr double verticalPadding = 7;
constexpr double spacing = 12;
constexpr double rowRadius = 4;
constexpr double iconEdge = 18;
constexpr double iconRadius = 3;
constexpr double symbolSize = 12;
constexpr double trailingWidth = 24;
constexpr double pinSize = 9;
constexpr double rowTextSize = 13;
constexpr double badgeTextSize = 10;
// As on the keys that lie in its place while a modifier is held.
constexpr double badgeSymbolSize = 10;
constexpr double badgeGap = 1;
// More than any row has room for; a link may be as long as a book.
constexpr qsizetype shownLength = 1024;

double badgeSymbolEdge() {
    return interfaceLength(badgeSymbolSize);
}

/// The digits of one font may differ in width; the slot is one for all rows.
double trailingSlotWidth() {
    return std::max<double>(
        interfaceLength(trailingWidth),
        badgeSymbolEdge() + badgeGap +
            std::ceil(QFontMetricsF(interfaceFont(badgeTextSize)).horizontalAdvance(QLatin1Char('8'))));
}

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
    const auto item = model().item(index);
    if (!item)
        return;
    const auto row = ItemRow::of(*item, static_cast<std::size_t>(index.row()));
    const bool isSelected = item->id() == look().selection;
    const bool isHovered = item->id() == look().hovered;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? look().theme.selection : look().theme.hover);
        painter->drawRoundedRect(option.rect, rowRadius, rowRadius);
    }
    QRectF rest = QRectF(option.rect).adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    paintIcon(*painter, leftSlot(rest, interfaceLength(iconEdge)), row, index);
    paintTrailingSlot(*painter, rightSlot(rest, trailingSlotWidth(), spacing), row,
                      isSelected ? look().peek : 0);
    if (const double pin = pinShown(item->id(), row.isPinned); pin > 0) {
        const double pinWidth = interfaceLength(Symbol::edgeFor(pinSize));
        const auto slot = rightSlot(rest, pinWidth, spacing);
        painter->setOpacity(pin);
        Symbol(QStringLiteral("pin.fill")).paint(*painter, slot, pinWidth, look().theme.primary(0.85));
        painter->setOpacity(1);
    }
    const auto font = interfaceFont(rowTextSize);
    painter->setFont(font);
    painter->setPen(row.primaryColor.value_or(look().theme.text));
    painter->drawText(rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                      QFontMetrics(font).elidedText(row.primaryText.left(shownLength), Qt::ElideRight,
                                                    static_cast<int>(rest.width())));
    painter->restore();
}

QSize ItemRowDelegate::thumbnailSize() {
    const int edge = interfaceLength(iconEdge);
    return {edge, edge};
}

int ItemRowDelegate::rowHeight() {
    const int content = qMax(thumbnailSize().height(), QFontMetrics(interfaceFont(rowTextSize)).height());
    return content + static_cast<int>(2 * verticalPadding);
}

QSize ItemRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), rowHeight()};
}

void ItemRowDelegate::paintIcon(QPainter& painter, const QRectF& slot, const ItemRow& row,
                                const QModelIndex& index) const {
    const auto frame = centredSquare(slot, interfaceLength(iconEdge));
    if (row.swatch) {
        paintSwatch(painter, frame, *row.swatch);
        return;
    }
    if (row.hasThumbnail) {
        const auto pixels = (QSizeF(thumbnailSize()) * painter.device()->devicePixelRatio()).toSize();
        const auto picture = thumbnails().thumbnail(model().item(index), pixels);
        if (picture && !picture->isNull()) {
            paintPicture(painter, frame, *picture);
            return;
        }
    }
    Symbol(row.symbol)
        .paint(painter, frame, interfaceLength(Symbol::edgeFor(symbolSize)), look().theme.symbol);
}

void ItemRowDelegate::paintPicture(QPainter& painter, const QRectF& frame, const QImage& picture) const {
    QPainterPath shape;
    shape.addRoundedRect(frame, iconRadius, iconRadius);
    painter.save();
    painter.setClipPath(shape, Qt::IntersectClip);
    painter.drawImage(frame, picture);
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(look().theme.hairline, 0.5));
    painter.drawRoundedRect(frame.adjusted(0.25, 0.25, -0.25, -0.25), iconRadius, iconRadius);
}

void ItemRowDelegate::paintSwatch(QPainter& painter, const QRectF& frame, const QColor& color) const {
    painter.setBrush(color);
    painter.setPen(QPen(look().theme.hairline, 0.5));
    painter.drawRoundedRect(frame.adjusted(0.25, 0.25, -0.25, -0.25), iconRadius, iconRadius);
}

void ItemRowDelegate::paintTrailingSlot(QPainter& painter, const QRectF& slot, const ItemRow& row,
                                        double peek) const {
    if (row.quickPasteIndex && peek < 1) {
        painter.setOpacity(1 - peek);
        const auto font = interfaceFont(badgeTextSize);
        const auto digit = QString::number(*row.quickPasteIndex);
        const double digitWidth = QFontMetricsF(font).horizontalAdvance(digit);
        const double symbolEdge = badgeSymbolEdge();
        const QRectF symbolFrame(slot.right() - digitWidth - badgeGap - symbolEdge, slot.top(), symbolEdge,
                                 slot.height());
        Symbol(QStringLiteral("command")).paint(painter, symbolFrame, symbolEdge, look().theme.secondaryText);
        painter.setFont(font);
        painter.setPen(look().theme.secondaryText);
        painter.drawText(QRectF(slot.right() - digitWidth, slot.top(), digitWidth + 1, slot.height()),
                         Qt::AlignVCenter | Qt::AlignLeft, digit);
        painter.setOpacity(1);
    }
    KeyCapsule{{QStringLiteral("command")}, QStringLiteral("K")}.paint(painter, slot.center(), look().theme,
                                                                       peek);
}

} // namespace kestrova
