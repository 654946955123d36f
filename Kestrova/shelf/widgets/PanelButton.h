#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/widgets/ShelfTheme.h"

#include <QAbstractButton>

#include <functional>

namespace kestrova {

/// A button of the shelf that draws itself and takes no focus, so that a click on it leaves the keyboard
/// where the state says it is.
class PanelButton : public QAbstractButton {
public:
    explicit PanelButton(QWidget* parent);

    std::function<void()> onTap;

    void setTheme(const ShelfTheme& theme);

protected:
    const ShelfTheme& theme() const { return m_theme; }
    /// From 0 to 1: how far the pointer has lit it up.
    double hover() const { return m_hover.value(); }

    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    ShelfTheme m_theme;
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
