#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QTextEdit>

namespace kestrova {

class ThinScrollBar;

/// A text of ordinary length that a person changes. No character is lost, given that all lines end alike.
/// The control for rich text, since the one for plain text sets lines as closely as its Latin font asks for;
/// it takes and holds plain text only.
class ItemEditor final : public QTextEdit {
public:
    ItemEditor(const QString& text, QString lineEnd, QWidget* parent);

    /// What was given, to the letter, as long as nobody has changed it; with what is being composed.
    QString text() const;
    void setTheme(const ShelfTheme& theme);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    bool isUntouched() const;
    void setLineHeight(int height);

    const QString m_original;
    const QString m_lineEnd;
    ThinScrollBar* m_scrollBar;
};

} // namespace kestrova
