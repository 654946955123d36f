#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

/// Stands where no item is looked at.
class EmptyDetailState final : public QWidget {
public:
    explicit EmptyDetailState(QWidget* parent);

    void render(const ShelfTheme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ShelfTheme m_theme;
};

} // namespace kestrova
