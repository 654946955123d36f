#include "Kestrova/detail/text/LargeTextEdit.h"

#include "Kestrova/detail/text/LargeTextAccessible.h"
#include "Kestrova/detail/text/LargeTextMenu.h"
#include "Kestrova/detail/text/TextKeys.h"
#include "Kestrova/detail/text/TextPainting.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"
#include "Platform/TextControl.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QStyleHints>

#include <algorithm>
#include <chrono>

namespace kestrova {
namespace {

constexpr std::chrono::milliseconds scrollInterval{25};
/// How much may stay laid out, in units of text.
constexpr qsizetype keptUnits = 200'000;

} // namespace

LargeTextEdit::LargeTextEdit(QWidget* parent)
    : QAbstractScrollArea(parent),
      m_layouts(m_edited.text()),
      m_scroll(m_edited.text(), m_layouts),
      m_moves(m_edited.text(), m_layouts),
      m_marking(m_edited, m_moves, m_layouts.pieces()),
      m_scrollBar(new ThinScrollBar),
      m_scrollBarLink(*m_scrollBar, m_edited.text(), m_scroll) {
    installLargeTextAccessibility();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    setVerticalScrollBar(m_scrollBar);
    // One that comes and goes would wrap the text anew each time; it draws nothing while it is of no use.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_edited.onEdit = [this](const LargeText::Change& change, const QString& removed) {
        onEdit(change, removed);
    };
    m_edited.onSelect = [this] { onSelect(); };
    m_scrollBarLink.onScroll = [this] { showScrolled(); };
    tellUndo();
}

void LargeTextEdit::setText(const QString& text) {
    endMarking();
    finishComposing();
    m_edited.setText(text);
    m_layouts.clear();
    m_column.reset();
    m_scroll.moveTo({});
    relayOut();
    tellUndo();
}

QString LargeTextEdit::text() const {
    const auto& composed = m_layouts.composition();
    auto text = m_edited.text().toString();
    return composed.text.isEmpty() ? text : text.insert(composed.position, composed.text);
}

void LargeTextEdit::setReadOnly(bool isReadOnly) {
    finishComposing();
    m_isReadOnly = isReadOnly;
    setAttribute(Qt::WA_InputMethodEnabled, !isReadOnly);
    showCaret();
}

void LargeTextEdit::setTheme(const ShelfTheme& theme) {
    setFont(fixedInterfaceFont(13));
    setPalette(theme.palette());
    m_scrollBar->setThumbColor(theme.scrollThumb);
}

void LargeTextEdit::select(qsizetype anchor, qsizetype caret) {
    finishComposing();
    m_edited.select(anchor, caret);
}

void LargeTextEdit::reveal(qsizetype position) {
    m_scroll.reveal(position);
    showScrolled();
}

void LargeTextEdit::onEdit(const LargeText::Change& change, const QString& removed) {
    m_layouts.edited(change);
    m_column.reset();
    m_scroll.edited(change);
    m_scroll.reveal(m_edited.selection().caret);
    showScrolled();
    showCaret();
    tellUndo();
    tellReadersOfEdit(*this, change, removed);
    if (onTextChange)
        onTextChange();
}

void LargeTextEdit::onSelect() {
    m_column.reset();
    showCaret();
    viewport()->update();
    tellReadersOfSelection(*this);
}

/// Some of this control's keys are its own only while there is something to undo; whoever deals them out does
/// not know what kind of control it is.
void LargeTextEdit::tellUndo() {
    setProperty(TextControl::undoAvailable, canPerform(TextCommand::undo));
}

void LargeTextEdit::relayOut() {
    m_layouts.setStyle({font(), std::max(1, viewport()->width() - caretWidth())});
    m_scroll.setHeight(viewport()->height());
    m_scroll.relaid();
    showScrolled();
}

void LargeTextEdit::showScrolled() {
    forgetFarLayouts();
    m_scrollBarLink.show();
    viewport()->update();
    updateMicroFocus();
}

/// A caret that has just moved is to be seen at once.
void LargeTextEdit::showCaret() {
    m_isCaretShown = hasFocus() && !m_isReadOnly;
    const int flashTime = QGuiApplication::styleHints()->cursorFlashTime();
    if (m_isCaretShown && flashTime > 1)
        m_blink.start(flashTime / 2, this);
    else
        m_blink.stop();
    viewport()->update();
    updateMicroFocus();
}

int LargeTextEdit::caretWidth() const {
    return std::max(1, style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this));
}

void LargeTextEdit::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    paintText(painter, m_scroll, m_edited.selection(), palette(), event->rect());
    const auto caret = m_isCaretShown && m_isComposedCaretShown
                           ? m_scroll.caretRect(m_edited.selection().caret, m_composedCaret)
                           : std::nullopt;
    if (caret)
        painter.fillRect(QRectF(caret->topLeft(), QSizeF(caretWidth(), caret->height())),
                         palette().color(QPalette::Text));
    forgetFarLayouts();
}

void LargeTextEdit::forgetFarLayouts() {
    if (m_layouts.units() > keptUnits)
        m_layouts.keepOnly(m_scroll.place().line - keptUnits / 8, m_scroll.visibleEnd() + keptUnits / 8);
}

/// A screen reader may walk through all of a text that is painted nowhere.
TextStretch LargeTextEdit::stretchAt(qsizetype position, QAccessible::TextBoundaryType boundary) {
    forgetFarLayouts();
    return textStretchAt(content(), m_layouts, position, boundary);
}

void LargeTextEdit::resizeEvent(QResizeEvent*) {
    relayOut();
}

void LargeTextEdit::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    const auto type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange)
        relayOut();
    else if (type == QEvent::PaletteChange)
        viewport()->update();
}

void LargeTextEdit::hideEvent(QHideEvent* event) {
    endMarking();
    QAbstractScrollArea::hideEvent(event);
}

void LargeTextEdit::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_blink.timerId()) {
        m_isCaretShown = !m_isCaretShown;
        viewport()->update();
    } else if (event->timerId() == m_autoScroll.timerId()) {
        autoScroll();
    } else if (event->timerId() == m_tripleClick.timerId()) {
        m_tripleClick.stop();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void LargeTextEdit::wheelEvent(QWheelEvent* event) {
    constexpr double angleOfNotch = 120;
    const double notch = m_scroll.lineHeight() * QApplication::wheelScrollLines();
    const double pixels = event->pixelDelta().isNull() ? event->angleDelta().y() / angleOfNotch * notch
                                                       : event->pixelDelta().y();
    const auto place = m_scroll.place();
    const bool isAtEnd = pixels > 0 ? place == TextScroll::Place{} : place == m_scroll.last();
    if (pixels == 0 || isAtEnd) {
        // It is for the page around the text then.
        m_wheelRest = 0;
        event->ignore();
        return;
    }
    m_wheelRest -= pixels;
    const int whole = static_cast<int>(m_wheelRest);
    m_wheelRest -= whole;
    m_scroll.scrollBy(whole);
    showScrolled();
    event->accept();
}

/// The bar's own values say too little; what it asks for comes by `m_scrollBarLink`.
void LargeTextEdit::scrollContentsBy(int, int) {}

void LargeTextEdit::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    finishComposing();
    const auto position = m_scroll.positionAt(event->position());
    const bool isThird = m_tripleClick.isActive() && (event->position() - m_pointer).manhattanLength() <
                                                         QApplication::startDragDistance();
    m_tripleClick.stop();
    m_pointer = event->position();
    m_isMarking = true;
    if (event->modifiers() & Qt::ShiftModifier)
        m_marking.extend(position);
    else
        m_marking.begin(position, isThird ? TextMarking::By::paragraphs : TextMarking::By::characters);
}

void LargeTextEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    finishComposing();
    m_pointer = event->position();
    m_isMarking = true;
    m_marking.begin(m_scroll.positionAt(m_pointer), TextMarking::By::words);
    m_tripleClick.start(QApplication::doubleClickInterval(), this);
}

void LargeTextEdit::mouseMoveEvent(QMouseEvent* event) {
    // A release need not come here: a menu or another window may have it.
    if (!(event->buttons() & Qt::LeftButton))
        endMarking();
    if (!m_isMarking)
        return;
    m_pointer = event->position();
    m_marking.dragTo(m_scroll.positionAt(m_pointer));
    const bool isOutside = m_pointer.y() < 0 || m_pointer.y() >= viewport()->height();
    if (!isOutside)
        m_autoScroll.stop();
    else if (!m_autoScroll.isActive())
        m_autoScroll.start(static_cast<int>(scrollInterval.count()), this);
}

/// The further away the pointer is, the faster.
void LargeTextEdit::autoScroll() {
    const double beyond = m_pointer.y() < 0 ? m_pointer.y() : m_pointer.y() - viewport()->height();
    m_scroll.scrollBy(static_cast<int>(beyond / 2) + (beyond < 0 ? -1 : 1));
    m_marking.dragTo(m_scroll.positionAt(m_pointer));
    showScrolled();
}

void LargeTextEdit::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && m_isMarking) {
        endMarking();
        offerSelection();
    } else if (event->button() == Qt::MiddleButton && !m_isReadOnly &&
               QGuiApplication::clipboard()->supportsSelection()) {
        const auto position = m_scroll.positionAt(event->position());
        select(position, position);
        pasteFrom(QClipboard::Selection);
    }
}

void LargeTextEdit::endMarking() {
    m_isMarking = false;
    m_autoScroll.stop();
}

void LargeTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = makeLargeTextMenu(*this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void LargeTextEdit::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    showCaret();
}

void LargeTextEdit::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    endMarking();
    showCaret();
}

} // namespace kestrova
