#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QString>
#include <QWidget>

#include <functional>

namespace kestrova {

class SymbolButton;

/// One form of a colour as text, with a button that copies it.
class ColorFormRow final : public QWidget {
public:
    ColorFormRow(QString label, QWidget* parent);

    std::function<void(const QString& text)> onCopy;

    void render(const QString& text, const ShelfTheme& theme);
    /// In points.
    static int heightHint();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    const QString m_label;
    QString m_text;
    ShelfTheme m_theme;
    SymbolButton* m_copy;
};

} // namespace kestrova
