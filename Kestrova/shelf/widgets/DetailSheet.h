#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

/// The card on which a detail screen lies: a line that says what it is, and below it the screen.
class DetailSheet final : public QWidget {
public:
    /// Room around the screen, in points.
    struct Padding {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
    };

    DetailSheet(QString title, QString keys, QWidget* parent);

    /// The screen is a child of the sheet. Called once.
    void setScreen(QWidget& screen, Padding padding);
    void setTheme(const ShelfTheme& theme);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect titleLine() const;

    const QString m_title;
    const QString m_keys;
    QWidget* m_screen = nullptr;
    Padding m_padding;
    ShelfTheme m_theme;
};

} // namespace kestrova
