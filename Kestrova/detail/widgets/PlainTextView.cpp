#include "Kestrova/detail/widgets/PlainTextView.h"

#include "Kestrova/detail/text/SpacedTextLayout.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QMimeData>
#include <QTextCursor>

#include <utility>

namespace kestrova {
namespace {

/// Where a position of the toolkit's document is in the text that it was made of: to it, \r\n is one.
qsizetype inText(const QString& text, int documentPosition) {
    qsizetype position = 0;
    for (int passed = 0; passed < documentPosition && position < text.size(); ++passed) {
        const bool isPair =
            text[position] == u'\r' && position + 1 < text.size() && text[position + 1] == u'\n';
        position += isPair ? 2 : 1;
    }
    return position;
}

} // namespace

PlainTextView::PlainTextView(QWidget* parent) : QPlainTextEdit(parent), m_scrollBar(new ThinScrollBar) {
    SpacedTextLayout::install(*this);
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
    if (std::exchange(m_shown, text) != text)
        setPlainText(text);
}

QMimeData* PlainTextView::createMimeDataFromSelection() const {
    const auto cursor = textCursor();
    const auto start = inText(m_shown, cursor.selectionStart());
    const auto end = inText(m_shown, cursor.selectionEnd());
    auto* const copied = new QMimeData;
    copied->setText(m_shown.mid(start, end - start));
    return copied;
}

void PlainTextView::setTheme(const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) == theme)
        return;
    setFont(fixedInterfaceFont(13));
    setPalette(theme.palette());
    m_scrollBar->setThumbColor(theme.scrollThumb);
}

} // namespace kestrova
