#pragma once

#include "Kestrova/shelf/widgets/KeyCapsule.h"
#include "Kestrova/shelf/widgets/PanelButton.h"

namespace kestrova {

/// One thing that can be done to an item, with the key that does it. Unlike other buttons of the shelf it
/// takes the focus: where it stands, the arrow keys walk the rows.
class ActionRow final : public PanelButton {
public:
    ActionRow(const QString& title, KeyCapsule key, QWidget* parent);

    static int rowHeight();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    KeyCapsule m_key;
};

} // namespace kestrova
