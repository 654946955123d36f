#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/TextKeys.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include <algorithm>

// What the keyboard and input methods do to the text.

namespace kestrova {
namespace {

/// How much of the text around the caret an input method is told of, in each direction.
constexpr qsizetype surroundings = 256;

bool changesText(TextCommand command) {
    return command != TextCommand::copy && command != TextCommand::selectAll;
}

} // namespace

bool LargeTextEdit::event(QEvent* event) {
    // What the text takes is not a shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const auto command = textCommandOf(key);
        const bool isOwn =
            m_isReadOnly ? command && !changesText(*command) : command || textMoveOf(key) || isTyping(key);
        if (isOwn)
            event->accept();
    }
    return QAbstractScrollArea::event(event);
}

bool LargeTextEdit::canPerform(TextCommand command) const {
    if (m_isReadOnly && changesText(command))
        return false;
    switch (command) {
    case TextCommand::copy:
    case TextCommand::cut:
        return !selection().isEmpty();
    case TextCommand::selectAll:
        return !content().isEmpty();
    case TextCommand::undo:
        return content().canUndo();
    case TextCommand::redo:
        return content().canRedo();
    default:
        return true;
    }
}

void LargeTextEdit::perform(TextCommand command) {
    if (!canPerform(command))
        return;
    finishComposing();
    switch (command) {
    case TextCommand::copy:
        QGuiApplication::clipboard()->setText(selectedText());
        return;
    case TextCommand::selectAll:
        m_edited.selectAll();
        offerSelection();
        return;
    case TextCommand::cut:
        QGuiApplication::clipboard()->setText(selectedText());
        m_edited.insert({});
        return;
    case TextCommand::paste:
        pasteFrom(QClipboard::Clipboard);
        return;
    case TextCommand::undo:
        m_edited.undo();
        return;
    case TextCommand::redo:
        m_edited.redo();
        return;
    case TextCommand::deleteBack:
        removeTo(m_moves.previousToDelete(selection().caret));
        return;
    case TextCommand::deleteForward:
        removeTo(m_moves.next(selection().caret));
        return;
    case TextCommand::deleteWordBack:
        removeTo(m_moves.previousWord(selection().caret));
        return;
    case TextCommand::deleteWordForward:
        removeTo(m_moves.nextWord(selection().caret));
        return;
    case TextCommand::deleteToLineEnd:
        removeTo(m_moves.moved(selection().caret, TextMove::paragraphEnd, 0, 0));
        return;
    case TextCommand::newLine:
        m_edited.insert(lineEndNearby());
        return;
    }
}

/// A line that is put in ends as those around it do.
QString LargeTextEdit::lineEndNearby() const {
    auto piece = m_layouts.pieces().at(selection().caret);
    if (!piece.endsParagraph() && piece.start > 0)
        piece = m_layouts.pieces().at(piece.start - 1);
    return piece.endsParagraph() ? content().mid(piece.textEnd, piece.end - piece.textEnd)
                                 : QStringLiteral("\n");
}

void LargeTextEdit::removeTo(qsizetype end) {
    if (!selection().isEmpty()) {
        m_edited.insert({});
        return;
    }
    const auto caret = selection().caret;
    m_edited.replace(std::min(caret, end), std::abs(end - caret), {});
}

void LargeTextEdit::replace(qsizetype position, qsizetype removed, const QString& inserted) {
    if (m_isReadOnly)
        return;
    finishComposing();
    m_edited.replace(position, removed, inserted);
}

void LargeTextEdit::pasteFrom(QClipboard::Mode mode) {
    const auto text = QGuiApplication::clipboard()->text(mode);
    if (!text.isEmpty())
        m_edited.insert(text);
}

void LargeTextEdit::offerSelection() const {
    auto* const clipboard = QGuiApplication::clipboard();
    const auto length = selection().end() - selection().start();
    if (clipboard->supportsSelection() && length > 0 && length <= longestOffer)
        clipboard->setText(selectedText(), QClipboard::Selection);
}

void LargeTextEdit::keyPressEvent(QKeyEvent* event) {
    const auto command = textCommandOf(*event);
    if (command && !(m_isReadOnly && changesText(*command))) {
        perform(*command);
        return;
    }
    const auto move = textMoveOf(*event);
    if (move && (m_isReadOnly ? !move->marks && scrollByKey(move->move) : moveByKey(*move)))
        return;
    if (!m_isReadOnly && isTyping(*event)) {
        finishComposing();
        m_edited.insert(event->text());
        return;
    }
    event->ignore();
}

bool LargeTextEdit::moveByKey(const TextKeyMove& key) {
    finishComposing();
    const auto before = selection();
    const auto& piece = m_layouts.at(before.caret);
    const double x = m_column.value_or(piece.xOf(before.caret));
    auto caret = m_moves.moved(before.caret, key.move, x, m_scroll.height());
    // Whoever leaves what is marked leaves it at its end.
    if (!key.marks && !before.isEmpty() && (key.move == TextMove::left || key.move == TextMove::right))
        caret = (key.move == TextMove::left) != piece.isRightToLeft() ? before.start() : before.end();
    m_edited.select(key.marks ? before.anchor : caret, caret);
    if (isVertical(key.move))
        m_column = x;
    reveal(caret);
    if (key.marks)
        offerSelection();
    return true;
}

bool LargeTextEdit::scrollByKey(TextMove move) {
    switch (move) {
    case TextMove::lineUp:
        m_scrollBar->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return true;
    case TextMove::lineDown:
        m_scrollBar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return true;
    case TextMove::pageUp:
        m_scrollBar->triggerAction(QAbstractSlider::SliderPageStepSub);
        return true;
    case TextMove::pageDown:
        m_scrollBar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        return true;
    case TextMove::lineStart:
    case TextMove::documentStart:
        m_scroll.moveTo({});
        break;
    case TextMove::lineEnd:
    case TextMove::documentEnd:
        m_scroll.moveTo(m_scroll.last());
        break;
    default:
        return false;
    }
    showScrolled();
    return true;
}

bool LargeTextEdit::focusNextPrevChild(bool next) {
    // In a text that is written, the key writes.
    return m_isReadOnly && QAbstractScrollArea::focusNextPrevChild(next);
}

void LargeTextEdit::finishComposing() {
    if (m_layouts.composition().text.isEmpty())
        return;
    QGuiApplication::inputMethod()->commit();
    setComposition({});
}

void LargeTextEdit::setComposition(const PieceLayout::Composition& composed) {
    if (m_layouts.composition() == composed)
        return;
    m_layouts.setComposition(composed);
    if (composed.text.isEmpty()) {
        m_composedCaret = 0;
        m_isComposedCaretShown = true;
    }
    m_scroll.relaid();
    showScrolled();
}

void LargeTextEdit::inputMethodEvent(QInputMethodEvent* event) {
    if (m_isReadOnly) {
        event->ignore();
        return;
    }
    const bool isComposing = !m_layouts.composition().text.isEmpty();
    setComposition({});
    const bool brings = !event->commitString().isEmpty() || event->replacementLength() > 0;
    if (!selection().isEmpty() && (brings || !event->preeditString().isEmpty()))
        m_edited.insert({});
    if (brings)
        m_edited.replace(selection().caret + event->replacementStart(), event->replacementLength(),
                         event->commitString());
    PieceLayout::Composition composed{selection().caret, event->preeditString(), {}};
    m_composedCaret = static_cast<int>(composed.text.size());
    m_isComposedCaretShown = true;
    for (const auto& attribute : event->attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) {
            m_composedCaret = std::clamp(attribute.start, 0, static_cast<int>(composed.text.size()));
            m_isComposedCaretShown = attribute.length != 0;
        } else if (attribute.type == QInputMethodEvent::TextFormat) {
            const auto format = attribute.value.value<QTextFormat>().toCharFormat();
            if (format.isValid())
                composed.formats.append({attribute.start, attribute.length, format});
        } else if (attribute.type == QInputMethodEvent::Selection) {
            const auto start = surroundingsOfCaret().start + attribute.start;
            m_edited.select(start, start + attribute.length);
            composed.position = selection().caret;
        }
    }
    if (!composed.text.isEmpty())
        setComposition(composed);
    if (isComposing || !composed.text.isEmpty()) {
        reveal(selection().caret);
        showCaret();
    }
}

TextPiece LargeTextEdit::surroundingsOfCaret() const {
    const auto caret = selection().caret;
    const auto piece = m_layouts.pieces().at(caret);
    const auto start = std::max(piece.start, caret - surroundings);
    const auto end = std::min(piece.textEnd, caret + surroundings);
    return {start, end, end};
}

QRect LargeTextEdit::inWidget(const std::optional<QRectF>& rect) const {
    return rect ? rect->toAlignedRect().translated(viewport()->pos()) : QRect();
}

QVariant LargeTextEdit::inputMethodQuery(Qt::InputMethodQuery query) const {
    const auto around = surroundingsOfCaret();
    const auto inside = [&](qsizetype position) {
        return static_cast<int>(std::clamp(position, around.start, around.end) - around.start);
    };
    switch (query) {
    case Qt::ImEnabled:
        return !m_isReadOnly;
    case Qt::ImReadOnly:
        return m_isReadOnly;
    case Qt::ImCursorRectangle:
        return inWidget(m_scroll.caretRect(selection().caret, m_composedCaret));
    case Qt::ImAnchorRectangle:
        return inWidget(m_scroll.caretRect(selection().anchor));
    case Qt::ImFont:
        return font();
    case Qt::ImHints:
        return static_cast<int>(inputMethodHints() | Qt::ImhMultiLine);
    case Qt::ImCursorPosition:
        return inside(selection().caret);
    case Qt::ImAnchorPosition:
        return inside(selection().anchor);
    case Qt::ImAbsolutePosition:
        return static_cast<int>(selection().caret);
    case Qt::ImSurroundingText:
        return content().mid(around.start, around.end - around.start);
    case Qt::ImTextBeforeCursor:
        return content().mid(around.start, selection().caret - around.start);
    case Qt::ImTextAfterCursor:
        return content().mid(selection().caret, around.end - selection().caret);
    case Qt::ImCurrentSelection:
        return content().mid(selection().start(),
                             std::min(selection().end() - selection().start(), surroundings));
    default:
        return {};
    }
}

} // namespace kestrova
