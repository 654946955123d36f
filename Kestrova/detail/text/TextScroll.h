#pragma once

#include "Kestrova/detail/text/PieceLayouts.h"

#include <QPointF>
#include <QRectF>

#include <compare>
#include <functional>
#include <optional>

namespace kestrova {

/// Which part of a text a viewport shows. It holds on to the text, not to a distance from its start, which
/// nobody could tell without laying all of it out.
class TextScroll {
public:
    /// The first line to be seen, and how many of its pixels are above the viewport.
    struct Place {
        qsizetype line = 0;
        int above = 0;

        auto operator<=>(const Place&) const = default;
    };

    /// Both outlive this.
    TextScroll(const LargeText& text, PieceLayouts& layouts) : m_text(text), m_layouts(layouts) {}

    void setHeight(int height);
    int height() const { return m_height; }
    /// Of a line of the font's own script.
    int lineHeight() const;

    const Place& place() const { return m_place; }
    /// Where the end of the text is at the end of the viewport; the start if there is room for all of it.
    Place last();

    void moveTo(const Place& place);
    /// Towards the end of the text, or its start if negative.
    void scrollBy(int pixels);
    /// As far as needed for the line of `position` to be seen.
    void reveal(qsizetype position);

    /// How much of the text is above the viewport, in units of the text; and the place where it is that much.
    qsizetype unitsAbove(const Place& place);
    void moveToUnits(qsizetype units);

    /// To be called after widths or fonts have changed, and after an edit.
    void relaid();
    void edited(const LargeText::Change& change);

    /// The pieces to be seen, with the distance of their tops from the viewport's.
    void forEachVisible(const std::function<void(const PieceLayout&, int top)>& visit);
    /// Behind the last of them.
    qsizetype visibleEnd();

    /// Outside of the viewport it is the nearest line that is partly inside.
    qsizetype positionAt(QPointF point);
    /// A line's height at the place before the unit, or that much behind it in what is being composed there;
    /// absent if it is not in the viewport.
    std::optional<QRectF> caretRect(qsizetype position, int composedUnits = 0);

private:
    struct Line {
        const PieceLayout& piece;
        int number;
    };

    Line lineAt(qsizetype position);
    Place normalized(const Place& place);
    /// The place that many pixels further on or back; it ends at the ends of the text.
    Place moved(const Place& place, int pixels);

    const LargeText& m_text;
    PieceLayouts& m_layouts;
    int m_height = 0;
    Place m_place;
    std::optional<Place> m_last;
};

} // namespace kestrova
