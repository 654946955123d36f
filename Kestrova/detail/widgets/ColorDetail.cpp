#include "Kestrova/detail/widgets/ColorDetail.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "Kestrova/detail/SameText.h"
#include "Kestrova/detail/widgets/Checkerboard.h"
#include "Kestrova/detail/widgets/ColorFormRow.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

constexpr int leastSwatchHeight = 64;
constexpr int mostSwatchHeight = 160;
constexpr int spacing = 12;
constexpr double radius = 8;
constexpr double hairlineWidth = 0.5;
constexpr double symbolSize = 28;
constexpr qsizetype longestShown = 1000;

QString firstOf(const QString& text) {
    return text.left(longestShown).simplified();
}

} // namespace

ColorDetail::ColorDetail(Copy onCopy, QWidget* parent)
    : ContentView(parent),
      m_onCopy(std::move(onCopy)),
      m_rows{new ColorFormRow(QStringLiteral("HEX"), this), new ColorFormRow(QStringLiteral("RGB"), this),
             new ColorFormRow(QStringLiteral("HSL"), this)} {
    setAccessibleRole(*this, QAccessible::Grouping);
    for (auto* const row : m_rows)
        row->onCopy = [this](const QString& text) { copy(text); };
}

void ColorDetail::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    const bool isOther = m_content.isNull() || !isSameText(item->content(), m_content);
    const bool isNewTheme = std::exchange(m_theme, theme) != theme;
    m_item = item;
    if (!isOther && !isNewTheme)
        return;
    m_content = item->content();
    const auto color = parseColor(m_content);
    m_color = color ? std::optional(qColor(*color)) : std::nullopt;
    setSpokenName(*this, firstOf(m_content));
    const std::array<QString (*)(const RGBA&), 3> forms{hexString, rgbString, hslString};
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_rows[i]->render(color ? forms[i](*color) : QString(), theme);
        m_rows[i]->setVisible(color.has_value());
    }
    arrange();
    update();
}

void ColorDetail::forget() {
    m_item.reset();
    m_content = QString();
    m_color.reset();
    setSpokenName(*this, {});
    for (auto* const row : m_rows)
        row->render({}, m_theme);
    update();
}

void ColorDetail::copy(const QString& text) {
    if (const auto item = m_item.lock())
        m_onCopy(item, text);
}

int ColorDetail::rowsHeight() const {
    if (!m_color)
        return spacing + QFontMetrics(fixedInterfaceFont(13)).height();
    return static_cast<int>(m_rows.size()) * (spacing + ColorFormRow::heightHint());
}

int ColorDetail::leastHeight(int) const {
    return 2 * padding + leastSwatchHeight + rowsHeight();
}

QRect ColorDetail::swatch() const {
    const int room = height() - 2 * padding - rowsHeight();
    return {padding, padding, width() - 2 * padding, std::clamp(room, leastSwatchHeight, mostSwatchHeight)};
}

void ColorDetail::arrange() {
    const auto above = swatch();
    int top = above.bottom() + 1;
    for (auto* const row : m_rows) {
        top += spacing;
        row->setGeometry(above.left(), top, above.width(), ColorFormRow::heightHint());
        top += ColorFormRow::heightHint();
    }
}

void ColorDetail::resizeEvent(QResizeEvent*) {
    arrange();
}

void ColorDetail::paintEvent(QPaintEvent*) {
    if (m_content.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto place = swatch();
    QPainterPath plate;
    plate.addRoundedRect(place, radius, radius);
    if (m_color && m_color->alpha() < 255)
        paintCheckerboard(painter, plate);
    painter.setPen(QPen(m_theme.hairline, hairlineWidth));
    painter.setBrush(m_color.value_or(m_theme.picturePlate));
    painter.drawPath(plate);
    if (m_color)
        return;
    Symbol(QStringLiteral("paintpalette"))
        .paint(painter, place, interfaceLength(symbolSize), m_theme.inactiveSymbol);
    const auto font = fixedInterfaceFont(13);
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    painter.drawText(
        QRect(place.left(), place.bottom() + 1 + spacing, place.width(), QFontMetrics(font).height()),
        Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(firstOf(m_content), Qt::ElideMiddle, place.width()));
}

} // namespace kestrova
