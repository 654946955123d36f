#pragma once

#include "Kestrova/shelf/widgets/FilterChip.h"

#include <QVariantAnimation>
#include <QWidget>

#include <cstddef>
#include <vector>

namespace kestrova {

class ShelfPanelView;

/// The row of type chips. Where it is too narrow for them it can be scrolled, and follows the keyboard.
class ChipRow final : public QWidget {
public:
    /// `view` outlives it.
    ChipRow(ShelfPanelView& view, QWidget* parent);

    void render(const ShelfTheme& theme);
    /// Where the arrow keys stand in the row.
    FilterChip& activeChip() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    FilterChip::Values values(std::size_t position) const;
    void makeChips(std::size_t count);
    void arrange();
    void scrollTo(double offset);
    void bringIntoView(std::size_t position);
    double largestOffset() const;

    ShelfPanelView& m_view;
    std::vector<FilterChip*> m_chips;
    QVariantAnimation m_scrolling;
    double m_offset = 0;
    int m_contentWidth = 0;
    std::size_t m_activeTagIndex = 0;
};

} // namespace kestrova
