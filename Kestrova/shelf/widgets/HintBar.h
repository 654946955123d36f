#pragma once

#include "Kestrova/shelf/KeyHint.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <span>
#include <vector>

namespace kestrova {

/// Tells which keys do what to the item beside it. Where it is too narrow for one line, the hints first move
/// closer together, then go on in further lines.
class HintBar final : public QWidget {
public:
    explicit HintBar(QWidget* parent);

    void render(const std::vector<KeyHint>& hints, const ShelfTheme& theme);
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<KeyHint> m_hints;
    ShelfTheme m_theme;
};

/// How hints stand in lines.
struct HintLines {
    /// Between two hints, in points.
    int spacing = 0;
    /// The number of hints in each.
    std::vector<std::size_t> counts;

    /// For hints of those widths, where `width` is to be had. One that is wider stands alone.
    static HintLines of(std::span<const int> widths, int width);
    bool operator==(const HintLines&) const = default;
};

} // namespace kestrova
