#include "Kestrova/detail/text/TextScrollBar.h"

#include "Kestrova/detail/text/LargeText.h"
#include "Kestrova/detail/text/TextLineHeight.h"
#include "Kestrova/detail/text/TextScroll.h"

#include <QScrollBar>

#include <algorithm>
#include <limits>
#include <utility>

namespace kestrova {
namespace {

/// What of a page is still seen on the next.
constexpr double overlap = 0.1;

int pageOf(int height) {
    return std::max(1, height - static_cast<int>(height * overlap));
}

} // namespace

TextScrollBar::TextScrollBar(QScrollBar& bar, const LargeText& text, TextScroll& scroll)
    : m_bar(bar), m_text(text), m_scroll(scroll) {
    QObject::connect(&m_bar, &QScrollBar::actionTriggered, &m_bar, [this](int action) { act(action); });
    QObject::connect(&m_bar, &QScrollBar::valueChanged, &m_bar, [this](int value) { follow(value); });
}

/// A bar counts in `int`.
qsizetype TextScrollBar::unitsPerStep() const {
    return m_text.size() / (std::numeric_limits<int>::max() / 2) + 1;
}

void TextScrollBar::show() {
    const auto scale = unitsPerStep();
    const auto last = m_scroll.last();
    const auto value = m_scroll.place() < last ? m_scroll.unitsAbove(m_scroll.place()) / scale
                                               : m_scroll.unitsAbove(last) / scale;
    const auto page = (m_scroll.visibleEnd() - m_scroll.place().line) / scale;
    m_shown = static_cast<int>(value);
    const QSignalBlocker silence(m_bar);
    m_bar.setRange(0, static_cast<int>(m_scroll.unitsAbove(last) / scale));
    m_bar.setPageStep(static_cast<int>(std::max(qsizetype{1}, page)));
    m_bar.setValue(m_shown);
}

/// Steps and pages are pixels of what is laid out; how many units that is differs from line to line.
void TextScrollBar::act(int action) {
    const int step = m_scroll.lineHeight();
    const int page = pageOf(m_scroll.height());
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        m_scroll.scrollBy(step);
        break;
    case QAbstractSlider::SliderSingleStepSub:
        m_scroll.scrollBy(-step);
        break;
    case QAbstractSlider::SliderPageStepAdd:
        m_scroll.scrollBy(page);
        break;
    case QAbstractSlider::SliderPageStepSub:
        m_scroll.scrollBy(-page);
        break;
    default:
        // The others say where to; it is followed as soon as the bar has that value.
        return;
    }
    m_shown = static_cast<int>(m_scroll.unitsAbove(m_scroll.place()) / unitsPerStep());
    m_bar.setSliderPosition(m_shown);
    if (onScroll)
        onScroll();
}

void TextScrollBar::follow(int value) {
    if (std::exchange(m_shown, value) == value)
        return;
    if (value >= m_bar.maximum())
        m_scroll.moveTo(m_scroll.last());
    else
        m_scroll.moveToUnits(value * unitsPerStep());
    if (onScroll)
        onScroll();
}

} // namespace kestrova
