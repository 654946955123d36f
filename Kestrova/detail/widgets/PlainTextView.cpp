#include "Kestrova/detail/widgets/PlainTextView.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <utility>

namespace kestrova {

PlainTextView::PlainTextView(QWidget* parent) : QPlainTextEdit(parent), m_scrollBar(new ThinScrollBar) {
    setAccessibleName(QStringLiteral("내용"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The keyboard stays where the state says; the mouse can mark text without it.
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(m_scrollBar);
    // Lines end at the edge, but blanks at their ends may hang over it.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
}

void PlainTextView::show(const QString& text) {
    const auto start = text.first(qMin(text.size(), longestText));
    if (std::exchange(m_shown, start) != start)
        setPlainText(start);
}

void PlainTextView::setTheme(const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) == theme)
        return;
    setFont(fixedInterfaceFont(12));
    setPalette(theme.palette());
    m_scrollBar->setThumbColor(theme.scrollThumb);
}

} // namespace kestrova
