#include "Kestrova/shelf/widgets/PanelMenuStyle.h"

#include "Kestrova/look/InterfaceFont.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionMenuItem>
#include <QWidget>

namespace kestrova {
namespace {

constexpr double menuRadius = 10;
constexpr double lineRadius = 6;
// Between the menu's edge and the ground of a highlighted line.
constexpr int inset = 5;
constexpr int sidePadding = 9;
constexpr int verticalPadding = 5;
constexpr int dividerHeight = 9;
constexpr double iconLength = 16;
constexpr int iconGap = 8;
constexpr int shortcutGap = 28;
constexpr double arrowLength = 18;
constexpr int minimumWidth = 190;
// A title that is longer, as the name of a collection or an application can be, ends in dots.
constexpr int longestTitle = 340;

int iconSize() {
    return interfaceLength(iconLength);
}

int arrowWidth() {
    return interfaceLength(arrowLength);
}

const QString mark = QStringLiteral("✓ ");

/// Room in front of the titles, if any line of the menu has a picture.
int iconColumn(const QStyleOptionMenuItem& line) {
    return line.maxIconWidth > 0 ? iconSize() + iconGap : 0;
}

void paintArrow(QPainter& painter, const QRect& frame, const QColor& color) {
    const double half = interfaceLength(7) / 2.0;
    const QPointF tip(frame.right() - sidePadding + 1, QRectF(frame).center().y());
    QPainterPath arrow(tip + QPointF(-half, -half));
    arrow.lineTo(tip);
    arrow.lineTo(tip + QPointF(-half, half));
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(arrow);
}

void paintLine(QPainter& painter, const QStyleOptionMenuItem& line) {
    const bool isEnabled = line.state & QStyle::State_Enabled;
    const bool isHighlighted = isEnabled && line.state & QStyle::State_Selected;
    const auto& colors = line.palette;
    painter.setRenderHint(QPainter::Antialiasing);
    if (isHighlighted) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.color(QPalette::Highlight));
        painter.drawRoundedRect(line.rect, lineRadius, lineRadius);
    }
    auto content = line.rect.adjusted(sidePadding, 0, -sidePadding, 0);
    if (!line.icon.isNull()) {
        const int edge = iconSize();
        const QRect place(content.left(), content.center().y() - (edge - 1) / 2, edge, edge);
        line.icon.paint(&painter, place, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);
    }
    content.setLeft(content.left() + iconColumn(line));
    const auto words = line.text.split(u'\t');
    const auto shortcut = words.value(1);
    const QFontMetrics metrics(line.font);
    painter.setFont(line.font);
    painter.setPen(colors.color(QPalette::PlaceholderText));
    painter.drawText(content, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, shortcut);
    int room = content.width();
    if (!shortcut.isEmpty())
        room -= metrics.horizontalAdvance(shortcut) + shortcutGap / 2;
    if (line.menuItemType == QStyleOptionMenuItem::SubMenu) {
        room -= arrowWidth();
        paintArrow(painter, line.rect, colors.color(QPalette::PlaceholderText));
    }
    painter.setPen(colors.color(isEnabled ? QPalette::Text : QPalette::PlaceholderText));
    auto title = words.value(0);
    constexpr int alignment = Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine | Qt::TextHideMnemonic;
    // A mark takes the room of two blanks, so that the names below each other begin at one place.
    if (title.startsWith(u"  ") || title.startsWith(mark)) {
        if (title.startsWith(mark))
            painter.drawText(content, alignment, mark);
        const int width = metrics.horizontalAdvance(mark);
        content.setLeft(content.left() + width);
        room -= width;
        title = title.mid(2);
    }
    painter.drawText(content, alignment,
                     metrics.elidedText(title, Qt::ElideRight, room, Qt::TextShowMnemonic));
}

} // namespace

int PanelMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_MenuPanelWidth:
    case PM_MenuDesktopFrameWidth:
    case PM_MenuTearoffHeight:
        return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return inset;
    case PM_SmallIconSize:
        return iconSize();
    case PM_MenuScrollerHeight:
        return 16;
    case PM_SubMenuOverlap:
        // From the end of the line. The edges of the menus lie on each other; the highlighted lines stand at
        // one height.
        return inset - 1;
    default:
        return QCommonStyle::pixelMetric(metric, option, widget);
    }
}

int PanelMenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_Menu_MouseTracking:
    case SH_Menu_Scrollable:
    case SH_Menu_SloppySubMenus:
    case SH_Menu_SpaceActivatesItem:
    case SH_Menu_KeyboardSearch:
        return 1;
    case SH_Menu_AllowActiveAndDisabled:
    case SH_Menu_FillScreenWithScroll:
        return 0;
    default:
        return QCommonStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize PanelMenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                       const QWidget* widget) const {
    const auto* const line = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !line)
        return QCommonStyle::sizeFromContents(type, option, size, widget);
    if (line->menuItemType == QStyleOptionMenuItem::Separator)
        return {minimumWidth, dividerHeight};
    int width = qMin(size.width(), longestTitle) + iconColumn(*line) + 2 * sidePadding;
    if (line->menuItemType == QStyleOptionMenuItem::SubMenu)
        width += arrowWidth();
    if (line->text.contains(u'\t'))
        width += shortcutGap;
    const int height = qMax(QFontMetrics(line->font).height(), iconSize()) + 2 * verticalPadding;
    return {qMax(width, minimumWidth), height};
}

void PanelMenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const {
    if (element != PE_PanelMenu && element != PE_FrameMenu) {
        QCommonStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    if (element == PE_FrameMenu)
        return;
    const bool isRounded = widget && widget->testAttribute(Qt::WA_TranslucentBackground);
    const double radius = isRounded ? menuRadius : 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(option->palette.color(QPalette::Mid), 1));
    painter->setBrush(option->palette.color(QPalette::Base));
    if (!isRounded)
        // The edge lets through what lies below it.
        painter->fillRect(option->rect, option->palette.color(QPalette::Base));
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter->restore();
}

void PanelMenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    if (element == CE_MenuEmptyArea)
        return;
    const auto* const line = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || !line) {
        QCommonStyle::drawControl(element, option, painter, widget);
        return;
    }
    painter->save();
    if (line->menuItemType == QStyleOptionMenuItem::Separator)
        painter->fillRect(QRect(line->rect.left() + sidePadding, line->rect.center().y(),
                                line->rect.width() - 2 * sidePadding, 1),
                          line->palette.color(QPalette::Midlight));
    else
        paintLine(*painter, *line);
    painter->restore();
}

} // namespace kestrova
