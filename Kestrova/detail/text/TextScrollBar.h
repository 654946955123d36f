#pragma once

#include <QtGlobal>

#include <functional>

class QScrollBar;

namespace kestrova {

class LargeText;
class TextScroll;

/// Lets a scroll bar tell, and decide, which part of a text is shown. It counts in units of the text.
class TextScrollBar {
public:
    /// All outlive this.
    TextScrollBar(QScrollBar& bar, const LargeText& text, TextScroll& scroll);

    /// After the text, its layout or what is shown of it have changed.
    void show();

    /// The person has scrolled by the bar.
    std::function<void()> onScroll;

private:
    void act(int action);
    void follow(int value);
    qsizetype unitsPerStep() const;

    QScrollBar& m_bar;
    const LargeText& m_text;
    TextScroll& m_scroll;
    int m_shown = 0;
};

} // namespace kestrova
