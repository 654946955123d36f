#include "Kestrova/shelf/widgets/HintBar.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/controls/PanelButton.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestrova {
namespace {

constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 8;
constexpr int spacingInHint = 5;
constexpr int widestSpacing = 14;
constexpr int narrowestSpacing = 6;
constexpr int lineSpacing = 6;
constexpr double labelSize = 11;
constexpr double radius = 10;
constexpr double strokeWidth = 0.5;

QFont labelFont() {
    return interfaceFont(labelSize);
}

KeyCapsule keycap(const KeyHint& hint) {
    return {hint.symbols, hint.letter, KeyCapsule::Form::keycap};
}

int widthOf(const KeyHint& hint) {
    return static_cast<int>(std::ceil(keycap(hint).size().width())) + spacingInHint +
           QFontMetrics(labelFont()).horizontalAdvance(hint.label);
}

std::vector<int> widthsOf(const std::vector<KeyHint>& hints) {
    std::vector<int> widths;
    std::ranges::transform(hints, std::back_inserter(widths), widthOf);
    return widths;
}

int lineHeight() {
    return std::max(static_cast<int>(std::ceil(keycap({}).size().height())),
                    QFontMetrics(labelFont()).height());
}

int widthOfLine(std::span<const int> widths, int spacing) {
    return std::accumulate(widths.begin(), widths.end(), 0) + spacing * static_cast<int>(widths.size() - 1);
}

/// Lines of no more than `most` hints each.
std::vector<std::size_t> countsOfLines(std::span<const int> widths, int width, std::size_t most) {
    std::vector<std::size_t> counts{0};
    int used = 0;
    for (const int hint : widths) {
        if (counts.back() == most || (counts.back() > 0 && used + widestSpacing + hint > width)) {
            counts.push_back(0);
            used = 0;
        }
        used += (counts.back() > 0 ? widestSpacing : 0) + hint;
        ++counts.back();
    }
    return counts;
}

} // namespace

HintLines HintLines::of(std::span<const int> widths, int width) {
    if (widths.empty())
        return {};
    if (widths.size() > 1) {
        const int bare = widthOfLine(widths, 0);
        const int spacing = std::min(widestSpacing, (width - bare) / static_cast<int>(widths.size() - 1));
        if (spacing >= narrowestSpacing)
            return {.spacing = spacing, .counts = {widths.size()}};
    }
    const auto filled = countsOfLines(widths, width, widths.size());
    // A last line with a lonely hint looks like a mistake.
    const auto even = countsOfLines(widths, width, (widths.size() + filled.size() - 1) / filled.size());
    return {.spacing = widestSpacing, .counts = even.size() == filled.size() ? even : filled};
}

HintBar::HintBar(QWidget* parent) : QWidget(parent) {
    setAccessibleName(QStringLiteral("단축키"));
}

void HintBar::render(const std::vector<KeyHint>& hints, const ShelfTheme& theme) {
    updateOnChange(*this, m_theme, theme);
    updateOnChange(*this, m_hints, hints);
}

int HintBar::heightForWidth(int width) const {
    const auto lines = HintLines::of(widthsOf(m_hints), width - 2 * horizontalPadding);
    const int count = static_cast<int>(lines.counts.size());
    return 2 * verticalPadding + count * lineHeight() + std::max(0, count - 1) * lineSpacing;
}

void HintBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_theme.hintBar);
    painter.setPen(QPen(m_theme.hintBarStroke, strokeWidth));
    constexpr double inset = strokeWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);

    const auto widths = widthsOf(m_hints);
    const auto lines = HintLines::of(widths, width() - 2 * horizontalPadding);
    const auto font = labelFont();
    painter.setFont(font);
    painter.setPen(m_theme.hintText);
    std::size_t next = 0;
    int y = verticalPadding;
    for (const auto count : lines.counts) {
        int x = (width() - widthOfLine(std::span(widths).subspan(next, count), lines.spacing)) / 2;
        for (const auto end = next + count; next < end; ++next) {
            const auto& hint = m_hints[next];
            const auto cap = keycap(hint);
            const double capWidth = std::ceil(cap.size().width());
            cap.paint(painter, {x + capWidth / 2, y + lineHeight() / 2.0}, m_theme);
            painter.drawText(QRectF(x + capWidth + spacingInHint, y, widths[next], lineHeight()),
                             Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, hint.label);
            x += widths[next] + lines.spacing;
        }
        y += lineHeight() + lineSpacing;
    }
}

} // namespace kestrova
