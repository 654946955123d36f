#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPlainTextEdit>

#include <functional>

namespace kestrova {

class ThinScrollBar;

/// A text that a person changes and saves with Ctrl or Super and Return or S.
class ItemEditor final : public QPlainTextEdit {
public:
    ItemEditor(const QString& content, QWidget* parent);

    /// What was given, to the letter, as long as nobody has changed it.
    QString content() const;
    void setTheme(const ShelfTheme& theme);

    std::function<void()> onSave;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_original;
    ThinScrollBar* m_scrollBar;
};

} // namespace kestrova
