#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

class LargeTextEdit;
class PlainTextView;

/// A text of any length to be read: it scrolls and can be marked, but not changed. It has no ground of its
/// own.
class FastTextView final : public QWidget {
public:
    explicit FastTextView(QWidget* parent);

    /// Scrolling and what is marked stay if the text is the same.
    void render(const QString& text, const ShelfTheme& theme);

    /// Whether it can have the keyboard, whose arrows, pages, Home and End scroll then. At first it cannot.
    void setTakesKeyboard(bool takes);

    const QString& text() const { return m_text; }

private:
    bool isShown(const QString& text) const;
    void showText(const QString& text);
    void showLarge(bool isLarge);
    void makeLarge();

    QString m_text;
    ShelfTheme m_theme;
    PlainTextView* m_plain;
    /// Absent until there is a text for it.
    LargeTextEdit* m_large = nullptr;
};

} // namespace kestrova
