#include "Kestrova/shelf/widgets/ChipRow.h"

#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/SpokenItem.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/widgets/FilterChip.h"

#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int sidePadding = 16;
constexpr int spacing = 6;
constexpr std::chrono::milliseconds scrollDuration = 180ms;

} // namespace

ChipRow::ChipRow(ShelfPanelView& view, QWidget* parent) : QWidget(parent), m_view(view) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("종류"));
    m_scrolling.setDuration(static_cast<int>(scrollDuration.count()));
    m_scrolling.setEasingCurve(QEasingCurve::OutQuad);
    connect(&m_scrolling, &QVariantAnimation::valueChanged,
            [this](const QVariant& offset) { scrollTo(offset.toDouble()); });
}

FilterChip::Values ChipRow::values(std::size_t position) const {
    FilterChip::Values values;
    if (position == 0) {
        values.label = QStringLiteral("All");
        values.isSelected = !m_view._typeFilter;
    } else {
        const auto type = m_view.availableTypes()[position - 1];
        values.systemIcon = symbolName(type);
        values.isSelected = m_view._typeFilter == type;
    }
    values.keyboardActive = m_view._lane == KeyboardLane::tags && m_view._activeTagIndex == position;
    if (m_view._controlHeld && position < shortcutDigits)
        values.controlShortcut = static_cast<int>(position) + 1;
    return values;
}

void ChipRow::render(const ShelfTheme& theme) {
    const auto& types = m_view.availableTypes();
    makeChips(types.size() + 1);
    for (std::size_t position = 0; position < m_chips.size(); ++position) {
        auto& chip = *m_chips[position];
        setSpokenName(chip, position == 0 ? QStringLiteral("All") : spokenName(types[position - 1]));
        chip.render(values(position), theme);
    }
    arrange();
    if (std::exchange(m_activeTagIndex, m_view._activeTagIndex) != m_view._activeTagIndex)
        bringIntoView(m_activeTagIndex);
}

FilterChip& ChipRow::activeChip() const {
    return *m_chips[std::min(m_view._activeTagIndex, m_chips.size() - 1)];
}

void ChipRow::makeChips(std::size_t count) {
    while (m_chips.size() > count) {
        // Later: its own tap may have led here.
        m_chips.back()->hide();
        m_chips.back()->deleteLater();
        m_chips.pop_back();
    }
    while (m_chips.size() < count) {
        auto* const chip = new FilterChip(this);
        if (m_chips.size() < shortcutDigits)
            chip->setAccessibleDescription(QStringLiteral("⌃%1").arg(m_chips.size() + 1));
        chip->onTap = [this, position = m_chips.size()] {
            m_view.perform([&] {
                m_view.selectTypeChip(static_cast<std::ptrdiff_t>(position));
                m_view._activeTagIndex = position;
            });
        };
        chip->show();
        m_chips.push_back(chip);
    }
}

void ChipRow::arrange() {
    int x = sidePadding;
    for (auto* const chip : m_chips) {
        const auto size = chip->sizeHint();
        chip->setGeometry(x - static_cast<int>(std::lround(m_offset)), 0, size.width(), size.height());
        x += size.width() + spacing;
    }
    m_contentWidth = x - spacing + sidePadding;
}

double ChipRow::largestOffset() const {
    return std::max(0, m_contentWidth - width());
}

void ChipRow::scrollTo(double offset) {
    m_offset = std::clamp(offset, 0.0, largestOffset());
    arrange();
}

void ChipRow::bringIntoView(std::size_t position) {
    if (position >= m_chips.size())
        return;
    const auto& chip = *m_chips[position];
    const double left = m_offset + chip.x() - sidePadding;
    const double right = m_offset + chip.x() + chip.width() + sidePadding - width();
    const double wanted =
        std::clamp(std::clamp(m_offset, right, std::max(left, right)), 0.0, largestOffset());
    m_scrolling.stop();
    if (!isVisible())
        return scrollTo(wanted);
    if (wanted == m_offset)
        return;
    m_scrolling.setStartValue(m_offset);
    m_scrolling.setEndValue(wanted);
    m_scrolling.start();
}

void ChipRow::resizeEvent(QResizeEvent*) {
    scrollTo(m_offset);
}

void ChipRow::hideEvent(QHideEvent*) {
    if (m_scrolling.state() == QAbstractAnimation::Running)
        m_scrolling.setCurrentTime(m_scrolling.duration());
}

void ChipRow::wheelEvent(QWheelEvent* event) {
    m_scrolling.stop();
    const auto delta = event->pixelDelta().isNull() ? event->angleDelta() / 4 : event->pixelDelta();
    scrollTo(m_offset - (delta.x() != 0 ? delta.x() : delta.y()));
    event->accept();
}

} // namespace kestrova
