#include "Kestrova/shelf/widgets/ItemCardDelegate.h"

#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ItemGridCard.h"
#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "Kestrova/shelf/widgets/ThumbnailCache.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr double cardRadius = 10;
constexpr int cardPadding = 4;
constexpr int regionHeight = 100;
constexpr double placeholderSize = 22;
constexpr double textPadding = 8;
constexpr double pinPadding = 5;
constexpr double badgePadding = 6;
constexpr double pinSize = 9;
constexpr int leastCaptionHeight = 28;
constexpr double captionPadding = 4;
constexpr double titleSpacing = 1;
constexpr double faviconEdge = 10;
constexpr double faviconSpacing = 3;
constexpr int singleLine = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
// More than any card has room for; a link may be as long as a book.
constexpr qsizetype captionLength = 512;

QFont captionFont() {
    return interfaceFont(11);
}

QFont titleFont() {
    return interfaceFont(11, QFont::Medium);
}

QFont hostFont() {
    return interfaceFont(10);
}

QFont bodyFont() {
    return interfaceFont(10);
}

double pinEdge() {
    return interfaceLength(Symbol::edgeFor(pinSize));
}

/// What stands beside a text is no lower than its line.
double lineHeight(const QFont& font) {
    return std::max(faviconEdge, QFontMetricsF(font).height());
}

int captionHeight() {
    const double twoLines = lineHeight(titleFont()) + titleSpacing + lineHeight(hostFont());
    return std::max(leastCaptionHeight, static_cast<int>(std::ceil(twoLines)));
}

QString withLineSeparators(QString text) {
    for (const auto* const newline : {"\r\n", "\n", "\r"})
        text.replace(QLatin1StringView(newline), QString(QChar::LineSeparator));
    return text;
}

/// In the corner in which a text is least likely to reach.
QRectF pinBadge(const QRectF& region) {
    const double edge = pinEdge() + 2 * pinPadding;
    return {region.right() - badgePadding - edge, region.bottom() - badgePadding - edge, edge, edge};
}

} // namespace

int ItemCardDelegate::cardHeight() {
    return 2 * cardPadding + regionHeight + captionHeight();
}

QSize ItemCardDelegate::thumbnailSize(int cardWidth) {
    return {std::max(1, cardWidth - 2 * cardPadding), regionHeight};
}

QSize ItemCardDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), cardHeight()};
}

void ItemCardDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    const auto item = model().item(index);
    if (!item)
        return;
    const auto link = linkOf(*item);
    const auto card =
        ItemGridCard::of(*item, m_linkPreviews && link ? m_linkPreviews->cachedPreview(*link) : std::nullopt);
    const auto& theme = look().theme;
    const bool isSelected = item->id() == look().selection;
    const bool isHovered = item->id() == look().hovered;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? theme.selection : theme.hover);
        painter->drawRoundedRect(option.rect, cardRadius, cardRadius);
    }
    const QRectF region(option.rect.topLeft() + QPoint(cardPadding, cardPadding),
                        thumbnailSize(option.rect.width()));
    m_plates.prepare(region.size().toSize(), painter->device()->devicePixelRatio(), theme);
    paintThumbnail(*painter, region, card, index);
    if (isSelected)
        strokeWithin(*painter, region, CardPlates::radius, theme.accent, 2);
    else
        painter->drawPixmap(region.topLeft(), m_plates.outline());
    if (const double shown = pinShown(item->id(), card.isPinned); shown > 0)
        paintPin(*painter, region, shown);
    paintCaption(*painter,
                 {region.left(), region.bottom(), region.width(), static_cast<double>(captionHeight())},
                 card);
    painter->restore();
}

void ItemCardDelegate::paintThumbnail(QPainter& painter, const QRectF& region, const ItemGridCard& card,
                                      const QModelIndex& index) const {
    const auto pixels = (region.size() * painter.device()->devicePixelRatio()).toSize();
    QImage picture;
    if (card.hasThumbnail)
        picture = thumbnails().thumbnail(model().item(index), pixels).value_or(QImage());
    else if (!card.linkPicture.isNull())
        picture = thumbnails().filled(card.linkPicture, pixels);
    if (!picture.isNull()) {
        paintPicture(painter, region, picture, pixels);
    } else if (card.swatch) {
        painter.drawPixmap(region.topLeft(), m_plates.plate());
        painter.setPen(Qt::NoPen);
        painter.setBrush(*card.swatch);
        // A smaller radius than that of the region would stand out of it.
        painter.drawRoundedRect(region, CardPlates::radius, CardPlates::radius);
    } else {
        painter.drawPixmap(region.topLeft(), m_plates.ground());
        if (card.text)
            paintText(painter, region, card);
        else
            Symbol(card.placeholder)
                .paint(painter, region, interfaceLength(Symbol::edgeFor(placeholderSize)),
                       look().theme.symbol);
    }
}

void ItemCardDelegate::paintPicture(QPainter& painter, const QRectF& region, const QImage& picture,
                                    QSize pixels) const {
    QPainterPath shape;
    shape.addRoundedRect(region, CardPlates::radius, CardPlates::radius);
    painter.save();
    painter.drawPixmap(region.topLeft(), m_plates.plate());
    painter.setClipPath(shape, Qt::IntersectClip);
    // One of another size stands in while the right one is made.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, picture.size() != pixels);
    QRectF part({}, region.size().scaled(picture.size(), Qt::KeepAspectRatio));
    part.moveCenter(QRectF(picture.rect()).center());
    painter.drawImage(region, picture, picture.size() == pixels ? QRectF(picture.rect()) : part);
    painter.restore();
}

void ItemCardDelegate::paintText(QPainter& painter, const QRectF& region, const ItemGridCard& card) const {
    const auto area = region.adjusted(textPadding, textPadding, -textPadding, -textPadding);
    const auto font = bodyFont();
    QTextLayout layout(withLineSeparators(*card.text), font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    painter.setFont(font);
    painter.setPen(look().theme.text);
    layout.beginLayout();
    const double lineSpacing = QFontMetricsF(font).height();
    double y = 0;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        // Its height is the font's; how wide it may be depends on where it comes to lie.
        QRectF place(area.left(), area.top() + y, area.width(), lineSpacing);
        if (card.isPinned && place.intersects(pinBadge(region)))
            place.setRight(pinBadge(region).left() - badgePadding);
        line.setLineWidth(place.width());
        const bool isLast = line.textStart() + line.textLength() >= layout.text().size();
        y += line.height();
        // Whole lines only, of which the last one tells that there is more.
        if (!isLast && y + line.height() > area.height()) {
            const auto rest = layout.text().mid(line.textStart()).replace(QChar::LineSeparator, u' ');
            painter.drawText(place, singleLine,
                             QFontMetricsF(font).elidedText(rest, Qt::ElideRight, place.width()));
            break;
        }
        line.draw(&painter, place.topLeft());
    }
    layout.endLayout();
}

void ItemCardDelegate::paintPin(QPainter& painter, const QRectF& region, double shown) const {
    const auto badge = pinBadge(region);
    painter.save();
    painter.setOpacity(shown);
    painter.setBrush(look().theme.keyCapsule);
    painter.setPen(QPen(look().theme.keyCapsuleStroke, 0.5));
    painter.drawEllipse(badge.adjusted(0.25, 0.25, -0.25, -0.25));
    Symbol(QStringLiteral("pin.fill")).paint(painter, badge, pinEdge(), look().theme.keyCapsuleText);
    painter.restore();
}

void ItemCardDelegate::paintCaption(QPainter& painter, const QRectF& frame, const ItemGridCard& card) const {
    const auto line = frame.adjusted(captionPadding, 0, -captionPadding, 0);
    const auto& theme = look().theme;
    if (card.title.isEmpty()) {
        paintLine(painter, line, captionFont(), theme.secondaryText, card.caption, card.favicon);
        return;
    }
    const double titleHeight = lineHeight(titleFont());
    const double hostHeight = lineHeight(hostFont());
    const double top = frame.center().y() - (titleHeight + titleSpacing + hostHeight) / 2;
    paintLine(painter, {line.left(), top, line.width(), titleHeight}, titleFont(), theme.text, card.title,
              {});
    // A third, fainter colour of texts could not be read on every desktop.
    paintLine(painter, {line.left(), top + titleHeight + titleSpacing, line.width(), hostHeight}, hostFont(),
              theme.secondaryText, card.caption, card.favicon);
}

void ItemCardDelegate::paintLine(QPainter& painter, QRectF line, const QFont& font, const QColor& color,
                                 const QString& text, const QImage& favicon) const {
    if (!favicon.isNull()) {
        const QRectF place(line.left(), std::round(line.center().y() - faviconEdge / 2), faviconEdge,
                           faviconEdge);
        const auto pixels = (place.size() * painter.device()->devicePixelRatio()).toSize();
        painter.drawImage(place, thumbnails().filled(favicon, pixels));
        line.setLeft(place.right() + faviconSpacing);
    }
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(line, singleLine,
                     QFontMetricsF(font).elidedText(text.left(captionLength), Qt::ElideRight, line.width()));
}

} // namespace kestrova
