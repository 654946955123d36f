#pragma once

#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/controls/PanelButton.h"

namespace kestrova {

/// A plain button that is a symbol, bright while its state is on. A capsule with keys may lie on it.
class SymbolButton final : public PanelButton {
public:
    /// `name` is for those who cannot see it; `symbolSize` is that of a text beside it.
    SymbolButton(const QString& name, double symbolSize, QWidget* parent);

    void render(const QString& symbol, bool isOn, const ShelfTheme& theme);
    void setCapsule(const KeyCapsule& capsule) { m_capsule = capsule; }
    void showCapsule(bool isShown);

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    double m_symbolSize;
    QString m_symbol;
    bool m_isOn = false;
    KeyCapsule m_capsule;
    Transition m_capsuleShown;
};

} // namespace kestrova
