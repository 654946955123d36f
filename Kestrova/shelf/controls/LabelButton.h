#pragma once

#include "Kestrova/shelf/controls/PanelButton.h"

namespace kestrova {

/// A plain button that is a symbol with its name beside it.
class LabelButton final : public PanelButton {
public:
    /// `symbol` is the name of one of the program's drawings.
    LabelButton(QString symbol, const QString& label, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QString m_symbol;
};

} // namespace kestrova
