#include "Kestrova/shelf/controls/ComposedLineEdit.h"

#include "Kestrova/shelf/controls/TextDrop.h"

#include <QFocusEvent>
#include <QInputMethodEvent>

#include <utility>

namespace kestrova {
namespace {

bool tellsOfTheControl(Qt::FocusReason reason) {
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

} // namespace

ComposedLineEdit::ComposedLineEdit(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    connect(this, &QLineEdit::textChanged, [this] { tellOfText(); });
}

QString ComposedLineEdit::composedText() const {
    auto composed = text();
    composed.insert(cursorPosition(), m_composed);
    return composed;
}

void ComposedLineEdit::show(const QString& newText) {
    if (newText == composedText())
        return;
    m_isSilent = true;
    m_composed.clear();
    const int cursor = cursorPosition();
    const bool wasAtEnd = cursor == text().size();
    setText(newText);
    if (!wasAtEnd)
        setCursorPosition(qMin(cursor, static_cast<int>(newText.size())));
    m_isSilent = false;
    m_toldText = newText;
}

void ComposedLineEdit::inputMethodEvent(QInputMethodEvent* event) {
    // One event may end a composition and begin another; what lies between was never the text.
    m_isSilent = true;
    m_composed = event->preeditString();
    QLineEdit::inputMethodEvent(event);
    m_isSilent = false;
    tellOfText();
}

void ComposedLineEdit::tellOfText() {
    if (m_isSilent || std::exchange(m_toldText, composedText()) == m_toldText)
        return;
    if (onTextChange)
        onTextChange(m_toldText);
}

void ComposedLineEdit::dragEnterEvent(QDragEnterEvent* event) {
    takeAsCopy(*event, *this, [this](QDragEnterEvent& taken) { QLineEdit::dragEnterEvent(&taken); });
}

void ComposedLineEdit::dragMoveEvent(QDragMoveEvent* event) {
    takeAsCopy(*event, *this, [this](QDragMoveEvent& taken) { QLineEdit::dragMoveEvent(&taken); });
}

void ComposedLineEdit::dropEvent(QDropEvent* event) {
    takeAsCopy(*event, *this, [this](QDropEvent& taken) { QLineEdit::dropEvent(&taken); });
}

void ComposedLineEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (tellsOfTheControl(event->reason()) && onFocusChange)
        onFocusChange(true);
}

void ComposedLineEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (tellsOfTheControl(event->reason()) && onFocusChange)
        onFocusChange(false);
}

} // namespace kestrova
