#include "Kestrova/detail/widgets/ItemEditor.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QKeyEvent>
#include <QTextDocument>

namespace kestrova {

ItemEditor::ItemEditor(const QString& content, QWidget* parent)
    : QPlainTextEdit(parent), m_original(content), m_scrollBar(new ThinScrollBar) {
    setAccessibleName(QStringLiteral("편집"));
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(false);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(m_scrollBar);
    document()->setDocumentMargin(0);
    setPlainText(content);
    document()->setModified(false);
}

QString ItemEditor::content() const {
    if (!document()->isModified())
        return m_original;
    // Not the plain text, in which a no-break space has become a blank.
    auto text = document()->toRawText();
    for (const auto separator : {QChar::ParagraphSeparator, QChar::LineSeparator})
        text.replace(QChar(separator), u'\n');
    return text;
}

void ItemEditor::setTheme(const ShelfTheme& theme) {
    setFont(fixedInterfaceFont(13));
    setPalette(theme.palette());
    m_scrollBar->setThumbColor(theme.scrollThumb);
}

void ItemEditor::keyPressEvent(QKeyEvent* event) {
    const bool isCommand = (event->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier ||
                           (event->modifiers() & ~Qt::KeypadModifier) == Qt::MetaModifier;
    const bool saves =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_S;
    if (isCommand && saves) {
        if (!event->isAutoRepeat() && onSave)
            onSave();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

} // namespace kestrova
