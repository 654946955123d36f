#pragma once

#include <QLineEdit>

#include <functional>

namespace kestrova {

/// A line of text in which what an input method is composing counts as text, so that whoever types a syllable
/// sees at once what comes of it. Main thread only.
class ComposedLineEdit : public QLineEdit {
public:
    explicit ComposedLineEdit(QWidget* parent);

    /// The text with what is being composed at the cursor.
    QString composedText() const;
    /// Puts `text` there. If it is there already, cursor, selection and composition stay.
    void show(const QString& text);

    /// The person has changed the composed text.
    std::function<void(const QString&)> onTextChange;
    /// The keyboard has come or gone, but not merely with the window or for a popup.
    std::function<void(bool)> onFocusChange;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void tellOfText();

    QString m_composed;
    bool m_isSilent = false;
    QString m_toldText;
};

} // namespace kestrova
