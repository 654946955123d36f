#include "Kestrova/shelf/widgets/ItemContentView.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "Kestrova/detail/widgets/PlainTextView.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace kestrova {
namespace {

constexpr int padding = 16;
constexpr double swatchHeight = 160;
constexpr double radius = 8;
// The size may still change, as while the panel grows; a picture is made once it has settled.
constexpr std::chrono::milliseconds settleTime{30};

} // namespace

ItemContentView::ItemContentView(MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent)
    : QWidget(parent), m_mainQueue(mainQueue), m_decoder(decoder), m_text(new PlainTextView(this)) {
    m_text->hide();
}

bool ItemContentView::showsPicture() const {
    return m_type == ClipboardItemType::image;
}

void ItemContentView::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    m_text->setTheme(theme);
    const auto content = item ? item->content() : QString();
    const auto type = item ? std::optional(item->type()) : std::nullopt;
    const auto byteCount = item ? item->values().imageByteCount : std::nullopt;
    const bool isOther = item.owner_before(m_item) || m_item.owner_before(item) || content != m_content ||
                         type != m_type || byteCount != m_byteCount;
    if (isOther || theme != m_theme)
        update();
    m_theme = theme;
    if (!isOther)
        return;
    m_item = item;
    m_showsItem = item != nullptr;
    m_content = content;
    m_type = type;
    m_byteCount = byteCount;
    m_picture = {};
    ++m_wish;
    setSpokenName(*this, item ? primaryText(*item) : QString());
    const bool showsText = type && type != ClipboardItemType::image && type != ClipboardItemType::color;
    // Or else nothing: the text of before is not to be kept.
    m_text->show(showsText ? content : QString());
    m_text->setVisible(showsText);
    requestPicture();
}

void ItemContentView::forgetDeleted() {
    if (const auto item = m_item.lock(); m_showsItem && (!item || item->isDeleted()))
        render(nullptr, m_theme);
}

void ItemContentView::requestPicture() {
    m_read.cancel();
    if (const auto item = m_item.lock(); item && showsPicture() && item->hasImageData())
        m_read = m_mainQueue.afterUnlessCancelled(settleTime, [this] { readPicture(); });
}

void ItemContentView::readPicture() {
    m_read = {};
    const auto item = m_item.lock();
    if (!item || width() <= 2 * padding || height() <= 2 * padding)
        return;
    const auto pixels = QSizeF(width() - 2 * padding, height() - 2 * padding) * devicePixelRatioF();
    m_decoder.decode(item->storedImageData(), pixels.toSize(), PictureDecoder::Fit::within,
                     [this, wish = m_wish](const QImage& picture) {
                         if (wish != m_wish)
                             return;
                         m_picture = picture;
                         m_picture.setDevicePixelRatio(devicePixelRatioF());
                         update();
                     });
}

void ItemContentView::resizeEvent(QResizeEvent*) {
    m_text->setGeometry(rect().adjusted(padding, padding, -6, -padding));
    requestPicture();
}

void ItemContentView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!m_showsItem)
        paintEmptyState(painter);
    else if (showsPicture())
        paintPicture(painter);
    else if (m_type == ClipboardItemType::color)
        paintColor(painter);
}

void ItemContentView::paintEmptyState(QPainter& painter) {
    const double symbolEdge = interfaceLength(34);
    constexpr double gap = 12;
    const auto font = interfaceFont(12);
    const double lineHeight = QFontMetricsF(font).height();
    const double top = height() / 2.0 - (symbolEdge + gap + lineHeight) / 2;
    Symbol(QStringLiteral("square.dashed"))
        .paint(painter, {0, top, static_cast<double>(width()), symbolEdge}, symbolEdge,
               m_theme.inactiveSymbol);
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    painter.drawText(QRectF(0, top + symbolEdge + gap, width(), lineHeight), Qt::AlignCenter,
                     QStringLiteral("항목을 선택하면 미리보기가 보여요"));
}

void ItemContentView::paintColor(QPainter& painter) {
    const auto color = parseColor(m_content);
    const QRectF swatch(padding, padding, width() - 2 * padding, qMin(swatchHeight, height() / 2.0));
    painter.setPen(QPen(m_theme.hairline, 0.5));
    painter.setBrush(color ? qColor(*color) : m_theme.picturePlate);
    painter.drawRoundedRect(swatch, radius, radius);
    if (!color)
        Symbol(QStringLiteral("paintpalette"))
            .paint(painter, swatch, interfaceLength(28), m_theme.inactiveSymbol);
    const auto font = interfaceFont(14, QFont::Medium);
    painter.setFont(font);
    painter.setPen(m_theme.text);
    painter.drawText(
        QRectF(padding, swatch.bottom() + padding, swatch.width(), QFontMetricsF(font).height()),
        Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(font).elidedText(m_content, Qt::ElideRight, static_cast<int>(swatch.width())));
}

void ItemContentView::paintPicture(QPainter& painter) {
    const QRectF plate = QRectF(rect()).adjusted(8, 8, -8, -8);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.picturePlate);
    painter.drawRoundedRect(plate, radius, radius);
    if (m_picture.isNull())
        return;
    QRectF frame({}, QSizeF(m_picture.deviceIndependentSize()));
    frame.moveCenter(plate.center());
    frame.moveTopLeft(frame.topLeft().toPoint());
    painter.drawImage(frame.topLeft(), m_picture);
}

} // namespace kestrova
