#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QAbstractButton>

#include <functional>

namespace kestrova {

/// A button of the shelf that draws itself. A click on it leaves the keyboard where the state says it is; Tab
/// reaches it, and then Return and Space press it. Whether it is on is the state's to say: a press changes
/// nothing by itself.
class PanelButton : public QAbstractButton {
public:
    explicit PanelButton(QWidget* parent);

    std::function<void()> onTap;

    void setTheme(const ShelfTheme& theme);
    /// Of an entry of a list: whether it is the one that is chosen.
    void setSelected(bool isSelected);
    bool isSelected() const { return m_isSelected; }

protected:
    const ShelfTheme& theme() const { return m_theme; }
    /// From 0 to 1: how far the pointer has lit it up.
    double hover() const { return m_hover.value(); }

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void nextCheckState() override {}

    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void paintFocusRing();

    ShelfTheme m_theme;
    bool m_isSelected = false;
    Transition m_hover;
};

/// `value`, kept in `member`; the widget is painted anew if that is a change.
template<typename Value>
void updateOnChange(QWidget& widget, Value& member, const Value& value) {
    if (member == value)
        return;
    member = value;
    widget.update();
}

} // namespace kestrova
