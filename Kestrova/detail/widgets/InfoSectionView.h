#pragma once

#include "Kestrova/detail/InfoSection.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <vector>

namespace kestrova {

class InfoRow;

/// What there is to tell of an item, under a heading.
class InfoSectionView final : public QWidget {
public:
    explicit InfoSectionView(QWidget* parent);

    void render(const std::vector<InfoRowData>& rows, const ShelfTheme& theme);
    /// In points.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int headingHeight() const;
    void arrange();

    ShelfTheme m_theme;
    /// As many as an item ever needed; the first `m_count` are shown.
    std::vector<InfoRow*> m_rows;
    std::size_t m_count = 0;
};

} // namespace kestrova
