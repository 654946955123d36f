#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPlainTextEdit>

namespace kestrova {

class ThinScrollBar;

/// A text in a fixed-width font that can be read and marked, and scrolls. Long texts cost no more than a long
/// page.
class PlainTextView final : public QPlainTextEdit {
public:
    explicit PlainTextView(QWidget* parent);

    /// Scrolling and selection stay if the text is the same.
    void show(const QString& text);
    void setTheme(const ShelfTheme& theme);

    static constexpr qsizetype longestText = 20'000;

private:
    ThinScrollBar* m_scrollBar;
    QString m_shown;
    ShelfTheme m_theme;
};

} // namespace kestrova
