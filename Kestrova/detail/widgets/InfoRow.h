#pragma once

#include "Kestrova/detail/InfoSection.h"
#include "Kestrova/detail/widgets/WrappedText.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <optional>

namespace kestrova {

/// One line of what is told of an item: what it is on the left, and what is told at the right or, where that
/// has no room, below. A value that is longer still loses its middle and stands in full in the tool tip.
class InfoRow final : public QWidget {
public:
    explicit InfoRow(QWidget* parent);

    void render(const InfoRowData& shown, const ShelfTheme& theme);
    /// In points.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Layout {
        WrappedText value;
        bool isBelow = false;
    };

    const Layout& layout(int width) const;
    void updateToolTip();

    InfoRowData m_data;
    ShelfTheme m_theme;
    mutable std::optional<Layout> m_layout;
    mutable int m_layoutWidth = -1;
};

} // namespace kestrova
