#pragma once

#include "Kestrova/detail/text/EditedText.h"
#include "Kestrova/detail/text/PieceLayouts.h"
#include "Kestrova/detail/text/TextMarking.h"
#include "Kestrova/detail/text/TextMoves.h"
#include "Kestrova/detail/text/TextScroll.h"
#include "Kestrova/detail/text/TextScrollBar.h"
#include "Kestrova/detail/text/TextStretch.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QClipboard>

#include <functional>
#include <optional>

namespace kestrova {

struct ShelfTheme;
enum class TextCommand;
struct TextKeyMove;
class ThinScrollBar;

/// A text of any length that can be read, marked and scrolled at once, and changed unless it is read-only:
/// only what is near the viewport is ever laid out. Lines end at the edge. In all else it is like the
/// toolkit's own control for plain text. Main thread only.
class LargeTextEdit : public QAbstractScrollArea {
public:
    explicit LargeTextEdit(QWidget* parent = nullptr);

    /// Shown from its start on, with nothing marked and nothing to undo.
    void setText(const QString& text);
    /// To the letter, with what is being composed. A copy of all of it, unless nothing was edited.
    QString text() const;
    bool isModified() const { return m_edited.text().isModified(); }

    /// At first it is not. Then the keys of the caret scroll, as far as the control has the keyboard.
    void setReadOnly(bool isReadOnly);
    bool isReadOnly() const { return m_isReadOnly; }
    void setTheme(const ShelfTheme& theme);

    const LargeText& content() const { return m_edited.text(); }
    const TextSelection& selection() const { return m_edited.selection(); }
    QString selectedText() const { return m_edited.selectedText(); }
    /// Without scrolling there.
    void select(qsizetype anchor, qsizetype caret);
    void reveal(qsizetype position);
    /// Puts it in the place of the units, unless read-only.
    void replace(qsizetype position, qsizetype removed, const QString& inserted);
    /// Does it as far as it can be done now.
    void perform(TextCommand command);
    bool canPerform(TextCommand command) const;

    /// Positions within the viewport; absent if it is not to be seen.
    std::optional<QRectF> caretRect(qsizetype position) { return m_scroll.caretRect(position); }
    qsizetype positionAt(QPointF point) { return m_scroll.positionAt(point); }
    PieceLayouts& layouts() { return m_layouts; }
    const TextScroll& scroll() const { return m_scroll; }
    /// What `textStretchAt` tells, for whoever walks through the text.
    TextStretch stretchAt(qsizetype position, QAccessible::TextBoundaryType boundary);

    /// The person has changed the text.
    std::function<void()> onTextChange;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    /// What is marked is offered to be pasted by the middle button only up to this length: nobody has asked
    /// for the copy.
    static constexpr qsizetype longestOffer = 1'000'000;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void onEdit(const LargeText::Change& change, const QString& removed);
    void onSelect();
    void tellUndo();
    void relayOut();
    void showScrolled();
    void showCaret();
    int caretWidth() const;
    void autoScroll();
    void endMarking();
    void forgetFarLayouts();

    bool moveByKey(const TextKeyMove& key);
    bool scrollByKey(TextMove move);
    void removeTo(qsizetype end);
    void pasteFrom(QClipboard::Mode mode);
    void offerSelection() const;

    void finishComposing();
    void setComposition(const PieceLayout::Composition& composed);
    QString lineEndNearby() const;
    TextPiece surroundingsOfCaret() const;
    QRect inWidget(const std::optional<QRectF>& rect) const;

    EditedText m_edited;
    PieceLayouts m_layouts;
    // Looking something up lays it out, which no one sees.
    mutable TextScroll m_scroll;
    TextMoves m_moves;
    TextMarking m_marking;
    ThinScrollBar* m_scrollBar;
    TextScrollBar m_scrollBarLink;

    bool m_isReadOnly = false;
    /// Where moves up and down try to stay.
    std::optional<double> m_column;
    double m_wheelRest = 0;

    bool m_isMarking = false;
    QPointF m_pointer;
    QBasicTimer m_autoScroll;
    QBasicTimer m_tripleClick;

    bool m_isCaretShown = false;
    QBasicTimer m_blink;
    int m_composedCaret = 0;
    bool m_isComposedCaretShown = true;
};

} // namespace kestrova
