#pragma once

#include "Kestrova/shelf/widgets/ColorSwatch.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

/// The colours to choose from. For the keyboard it is one stop, within which arrows walk and the space bar
/// chooses.
class SwatchRow final : public QWidget {
public:
    explicit SwatchRow(QWidget* parent);

    void render(const std::optional<QString>& chosenHex, const ShelfTheme& theme);
    /// The swatch that has the keyboard, or would get it: the last one that had it, else the chosen one.
    ColorSwatch& stop() const;
    const std::vector<ColorSwatch*>& swatches() const { return m_swatches; }

    std::function<void(const std::optional<QString>& hex)> onChoose;
    /// The second is that of the swatch under the pointer.
    std::function<void(bool isHovered, const std::optional<QString>& hex)> onHover;

private:
    void step(std::size_t from, int key);

    std::vector<ColorSwatch*> m_swatches;
    std::optional<std::size_t> m_visited;
};

} // namespace kestrova
