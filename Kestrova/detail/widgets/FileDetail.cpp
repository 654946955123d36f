#include "Kestrova/detail/widgets/FileDetail.h"

#include "Kestrova/detail/InfoFormatters.h"
#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/detail/SameText.h"
#include "Kestrova/detail/widgets/WrappedText.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/Workspace.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {
namespace {

constexpr int iconEdge = 64;
constexpr int iconGap = 14;
constexpr double lineSpacing = 4;
constexpr double nameSize = 14;
constexpr double sizeSize = 12;
constexpr int mostNameLines = 4;
constexpr qsizetype longestSpoken = 200;

void paintEnlarged(QPainter& painter, const QIcon& icon, const QRect& frame) {
    const auto pixmap = icon.pixmap(frame.size(), painter.device()->devicePixelRatioF());
    QRectF place({}, QSizeF(pixmap.size()).scaled(frame.size(), Qt::KeepAspectRatio));
    place.moveCenter(QRectF(frame).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, pixmap, QRectF(pixmap.rect()));
}

} // namespace

struct FileDetail::Texts {
    WrappedText name;
    std::optional<WrappedText> size;

    double height() const { return name.height() + (size ? lineSpacing + size->height() : 0); }
};

FileDetail::FileDetail(Workspace& workspace, const InfoFormatters& formatters, QWidget* parent)
    : ContentView(parent), m_workspace(workspace), m_formatters(formatters) {
    setAccessibleRole(*this, QAccessible::StaticText);
}

FileDetail::~FileDetail() = default;

void FileDetail::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) != theme) {
        m_texts.reset();
        update();
    }
    const bool isOtherFile = !isSameText(item->content(), m_path);
    if (!isOtherFile && item->fileSize() == m_size)
        return;
    m_path = item->content();
    m_size = item->fileSize();
    m_texts.reset();
    auto spoken = lastPathComponent(m_path).left(longestSpoken);
    if (m_size)
        spoken += QStringLiteral(", ") + m_formatters.byteCount.string(*m_size);
    setSpokenName(*this, spoken);
    if (isOtherFile)
        requestIcon();
    update();
}

void FileDetail::forget() {
    m_path.clear();
    m_size.reset();
    m_icon.reset();
    m_wish.reset();
    m_texts.reset();
    setSpokenName(*this, {});
    update();
}

void FileDetail::requestIcon() {
    m_icon.reset();
    m_wish = std::make_shared<bool>(true);
    m_workspace.fileIcon(m_path, [this, wish = std::weak_ptr(m_wish)](const QIcon& icon) {
        if (wish.expired())
            return;
        m_icon = icon;
        update();
    });
}

const FileDetail::Texts& FileDetail::texts(int width) const {
    if (m_texts && m_textsWidth == width)
        return *m_texts;
    const double room = width - 2 * padding - iconEdge - iconGap;
    m_textsWidth = width;
    m_texts = std::make_unique<Texts>(Texts{
        .name = WrappedText(lastPathComponent(m_path), {.font = interfaceFont(nameSize, QFont::DemiBold),
                                                        .width = room,
                                                        .mostLines = mostNameLines,
                                                        .elideMode = Qt::ElideMiddle}),
        .size = {}});
    if (m_size)
        m_texts->size.emplace(m_formatters.byteCount.string(*m_size),
                              WrappedText::Form{.font = interfaceFont(sizeSize), .width = room});
    return *m_texts;
}

int FileDetail::leastHeight(int width) const {
    return static_cast<int>(std::ceil(std::max<double>(iconEdge, texts(width).height()))) + 2 * padding;
}

void FileDetail::paintEvent(QPaintEvent*) {
    if (m_path.isNull())
        return;
    QPainter painter(this);
    const auto& shown = texts(width());
    const auto& [name, size] = shown;
    const double textHeight = shown.height();
    const double rowHeight = std::max<double>(iconEdge, textHeight);
    const QRect frame(padding, padding + static_cast<int>((rowHeight - iconEdge) / 2), iconEdge, iconEdge);
    if (m_icon && !m_icon->isNull())
        // A theme's largest may be smaller, and an icon does not grow by itself.
        paintEnlarged(painter, *m_icon, frame);
    else if (m_icon)
        Symbol(QStringLiteral("doc")).paint(painter, frame, iconEdge * 0.75, m_theme.inactiveSymbol);
    const double left = padding + iconEdge + iconGap;
    double top = padding + (rowHeight - textHeight) / 2;
    painter.setPen(m_theme.text);
    name.paint(painter, {left, top});
    top += name.height() + lineSpacing;
    painter.setPen(m_theme.secondaryText);
    if (size)
        size->paint(painter, {left, top});
}

} // namespace kestrova
