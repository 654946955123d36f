#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPixmap>
#include <QSize>

namespace kestrova {

/// What looks the same in the upper region of all cards of one size: drawn once, since large round shapes
/// are the dearest part of a card.
class CardPlates {
public:
    static constexpr double radius = 8;

    /// Draws them anew if anything differs from the last time. `region` in points.
    void prepare(QSize region, double devicePixelRatio, const ShelfTheme& theme);

    /// The fill of the region.
    const QPixmap& plate() const { return m_plate; }
    /// The same with the ground of texts and symbols on it.
    const QPixmap& ground() const { return m_ground; }
    /// The hairline around the region, to lie over what it shows.
    const QPixmap& outline() const { return m_outline; }

private:
    template<typename Draw>
    QPixmap drawn(Draw draw) const;

    QSize m_region;
    double m_ratio = 0;
    ShelfTheme m_theme;
    QPixmap m_plate;
    QPixmap m_ground;
    QPixmap m_outline;
};

/// A pen lies on both sides of its line; this stroke stays within the frame.
void strokeWithin(QPainter& painter, const QRectF& frame, double radius, const QColor& color, double width);

} // namespace kestrova
