#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPlainTextEdit>

namespace kestrova {

class ThinScrollBar;

/// A text in a fixed-width font that can be read and marked, and scrolls.
class PlainTextView final : public QPlainTextEdit {
public:
    explicit PlainTextView(QWidget* parent);

    /// Scrolling and selection stay if the text is the same.
    void show(const QString& text);
    void setTheme(const ShelfTheme& theme);

protected:
    /// To the letter; the toolkit's own gives a blank for a no-break space and a line feed for every line
    /// end.
    QMimeData* createMimeDataFromSelection() const override;

private:
    ThinScrollBar* m_scrollBar;
    QString m_shown;
    ShelfTheme m_theme;
};

} // namespace kestrova
