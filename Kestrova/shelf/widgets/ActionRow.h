#pragma once

#include "Kestrova/shelf/controls/PanelButton.h"

namespace kestrova {

/// One thing that can be done to an item. Unlike other buttons of the shelf it
/// takes the focus: where it stands, the arrow keys walk the rows.
class ActionRow final : public PanelButton {
public:
    ActionRow(const QString& title, QWidget* parent);

    static int rowHeight();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace kestrova
