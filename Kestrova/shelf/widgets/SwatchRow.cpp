#include "Kestrova/shelf/widgets/SwatchRow.h"

#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QHBoxLayout>

#include <algorithm>

namespace kestrova {

SwatchRow::SwatchRow(QWidget* parent) : QWidget(parent) {
    setAccessibleName(QStringLiteral("색"));
    setAccessibleRole(*this, QAccessible::Grouping);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (const auto& swatch : CollectionEditSheet::swatches()) {
        auto* const button = new ColorSwatch(swatch, this);
        const auto position = m_swatches.size();
        button->onTap = [this, hex = swatch.hex] {
            if (onChoose)
                onChoose(hex);
        };
        button->onHover = [this, hex = swatch.hex](bool isHovered) {
            if (onHover)
                onHover(isHovered, isHovered ? hex : std::nullopt);
        };
        button->onStep = [this, position](int key) { step(position, key); };
        button->onFocus = [this, position] { m_visited = position; };
        if (!m_swatches.empty())
            layout->addStretch();
        layout->addWidget(button);
        m_swatches.push_back(button);
    }
}

void SwatchRow::render(const std::optional<QString>& chosenHex, const ShelfTheme& theme) {
    for (auto* const swatch : m_swatches)
        swatch->render(swatch->hex() == chosenHex, theme);
}

ColorSwatch& SwatchRow::stop() const {
    if (m_visited)
        return *m_swatches[*m_visited];
    const auto chosen = std::ranges::find_if(m_swatches, &ColorSwatch::isChecked);
    return chosen == m_swatches.end() ? *m_swatches.front() : **chosen;
}

void SwatchRow::step(std::size_t from, int key) {
    const auto last = m_swatches.size() - 1;
    auto to = from;
    if (key == Qt::Key_Home)
        to = 0;
    else if (key == Qt::Key_End)
        to = last;
    else if (key == Qt::Key_Left || key == Qt::Key_Up)
        to = from == 0 ? last : from - 1;
    else
        to = from == last ? 0 : from + 1;
    m_swatches[to]->setFocus(Qt::OtherFocusReason);
}

} // namespace kestrova
