#pragma once

#include "Kestrova/shelf/controls/ComposedLineEdit.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

namespace kestrova {

/// A line of text on a plate of its own, with a ring while it has the keyboard.
class NameField final : public ComposedLineEdit {
public:
    explicit NameField(QWidget* parent);

    void setTheme(const ShelfTheme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ShelfTheme m_theme;
};

} // namespace kestrova
