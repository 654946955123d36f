#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

/// The slightly tinted, rounded ground that a text editor lies on.
class EditorGround final : public QWidget {
public:
    using QWidget::QWidget;

    /// Becomes a part of it. Called once.
    void setEditor(QWidget& editor);
    void setTheme(const ShelfTheme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ShelfTheme m_theme;
};

} // namespace kestrova
