#pragma once

#include "Kestrova/shelf/controls/PanelButton.h"

#include <optional>

namespace kestrova {

/// One choice of the chip row: a label or a symbol in a capsule.
class FilterChip final : public PanelButton {
public:
    /// What it shows now.
    struct Values {
        QString label;
        QString systemIcon;
        bool isSelected = false;
        bool keyboardActive = false;
        std::optional<int> controlShortcut = {};

        bool operator==(const Values&) const = default;
    };

    explicit FilterChip(QWidget* parent);

    void render(const Values& values, const ShelfTheme& theme);
    QSize sizeHint() const override;

    static int height();

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    Values m_values;
    /// The last digit, which still shows while its capsule goes.
    int m_digit = 0;
    Transition m_digitShown;
};

} // namespace kestrova
