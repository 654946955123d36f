#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QRadioButton>

#include <functional>

namespace kestrova {

/// One colour to choose. Whether it is the chosen one is for others to say.
class ColorSwatch final : public QRadioButton {
public:
    ColorSwatch(const CollectionEditSheet::Swatch& swatch, QWidget* parent);

    const std::optional<QString>& hex() const { return m_swatch.hex; }
    void render(bool isChosen, const ShelfTheme& theme);

    std::function<void()> onTap;
    std::function<void(bool)> onHover;
    /// An arrow key, Home or End.
    std::function<void(int key)> onStep;
    std::function<void()> onFocus;

    QSize sizeHint() const override;

    /// The room around the disc, in which the rings lie.
    static constexpr int overhang = 5;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void nextCheckState() override;

private:
    void tellHover(bool isHovered);

    CollectionEditSheet::Swatch m_swatch;
    ShelfTheme m_theme;
    Transition m_hover;
    bool m_toldHover = false;
};

} // namespace kestrova
