#include "Kestrova/detail/widgets/ItemEditor.h"

#include "Kestrova/detail/text/TextLineHeight.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/TextDrop.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace kestrova {

ItemEditor::ItemEditor(const QString& text, QString lineEnd, QWidget* parent)
    : QTextEdit(parent), m_original(text), m_lineEnd(std::move(lineEnd)), m_scrollBar(new ThinScrollBar) {
    setFrameShape(QFrame::NoFrame);
    setAcceptRichText(false);
    setTabChangesFocus(false);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(m_scrollBar);
    // Lines end at the edge, but blanks at their ends may hang over it.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    setPlainText(text);
    document()->setModified(false);
}

QString ItemEditor::text() const {
    const auto block = textCursor().block();
    const auto composed = block.layout()->preeditAreaText();
    if (composed.isEmpty() && !document()->isModified())
        return m_original;
    // Not the plain text, in which a no-break space has become a blank and every line end another.
    auto text = document()->toRawText();
    text.insert(block.position() + block.layout()->preeditAreaPosition(), composed);
    return text.replace(QChar(QChar::ParagraphSeparator), m_lineEnd);
}

void ItemEditor::setTheme(const ShelfTheme& theme) {
    setFont(fixedInterfaceFont(13));
    setPalette(theme.palette());
    setLineHeight(textLineHeight(font()));
    m_scrollBar->setThumbColor(theme.scrollThumb);
}

bool ItemEditor::isUntouched() const {
    return !document()->isModified() && !document()->isUndoAvailable() && !document()->isRedoAvailable();
}

void ItemEditor::setLineHeight(int height) {
    // To the toolkit this is an edit like any other. Where there are others already it would come between
    // them, so lines keep the distance that they have then: it is the least one, and no letter is cut off.
    if (!isUntouched())
        return;
    setUndoRedoEnabled(false);
    QTextCursor whole(document());
    whole.select(QTextCursor::Document);
    QTextBlockFormat format;
    format.setLineHeight(height, QTextBlockFormat::MinimumHeight);
    whole.mergeBlockFormat(format);
    setUndoRedoEnabled(true);
    document()->setModified(false);
}

void ItemEditor::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && (event->modifiers() & ~Qt::KeypadModifier) == Qt::ShiftModifier) {
        // A line end like all others: the toolkit has one of its own here that few programs know.
        textCursor().insertBlock();
        ensureCursorVisible();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void ItemEditor::inputMethodEvent(QInputMethodEvent* event) {
    // An input method knows the caret's line only. The toolkit would join that line with others, and from
    // outside of the text it would take out other letters than those that were meant.
    const auto cursor = textCursor();
    const auto first = document()->findBlock(cursor.selectionStart());
    const auto last = document()->findBlock(cursor.selectionEnd());
    const auto within = [before = first.position() - cursor.selectionStart(),
                         behind = last.position() + last.length() - 1 - cursor.selectionEnd()](int place) {
        return std::clamp(place, before, behind);
    };
    const int start = within(event->replacementStart());
    const int end = within(event->replacementStart() + std::max(0, event->replacementLength()));
    event->setCommitString(event->commitString(), start, end - start);
    QTextEdit::inputMethodEvent(event);
}

void ItemEditor::dragEnterEvent(QDragEnterEvent* event) {
    takeAsCopy(*event, *viewport(), [this](QDragEnterEvent& taken) { QTextEdit::dragEnterEvent(&taken); });
}

void ItemEditor::dragMoveEvent(QDragMoveEvent* event) {
    takeAsCopy(*event, *viewport(), [this](QDragMoveEvent& taken) { QTextEdit::dragMoveEvent(&taken); });
}

void ItemEditor::dropEvent(QDropEvent* event) {
    takeAsCopy(*event, *viewport(), [this](QDropEvent& taken) { QTextEdit::dropEvent(&taken); });
}

QMimeData* ItemEditor::createMimeDataFromSelection() const {
    // The toolkit's own would have blanks in it for no-break spaces, and be rich text too.
    auto* const copied = new QMimeData;
    copied->setText(textCursor().selectedText().replace(QChar(QChar::ParagraphSeparator), m_lineEnd));
    return copied;
}

void ItemEditor::insertFromMimeData(const QMimeData* source) {
    // The toolkit's own would bring in lines with a height of theirs.
    insertPlainText(source->text());
    ensureCursorVisible();
}

} // namespace kestrova
