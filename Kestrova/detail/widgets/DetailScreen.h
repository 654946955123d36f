#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <functional>

namespace kestrova {

class DetailBackBar;

/// The card on which a detail screen lies: a bar, and below it what there is to see.
class DetailScreen : public QWidget {
public:
    virtual void setTheme(const ShelfTheme& theme);
    /// What takes the keyboard when the screen appears.
    virtual QWidget& firstFocus() = 0;

protected:
    explicit DetailScreen(QWidget* parent) : QWidget(parent) {}

    /// Around a ground or a picture; the bar's buttons end with it.
    static constexpr int groundPadding = 12;
    /// Beside a text without a ground: it begins below the bar's symbol.
    static constexpr int textPadding = 16;

    /// Called once, by a constructor. Both become parts of the screen. `sidePadding` is that of the content.
    void setParts(DetailBackBar& bar, QWidget& content, int sidePadding);
    const ShelfTheme& theme() const { return m_theme; }

    void paintEvent(QPaintEvent* event) override;

private:
    DetailBackBar* m_bar = nullptr;
    ShelfTheme m_theme;
};

} // namespace kestrova
