#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/controls/ComposedLineEdit.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <functional>

namespace kestrova {

class PanelButton;
class SymbolButton;

/// The text control of the search.
class SearchLineEdit final : public ComposedLineEdit {
public:
    explicit SearchLineEdit(QWidget* parent);

protected:
    /// Once the shelf is hidden it is edited on by what was typed before, and takes nothing else: nobody sees
    /// what that would do.
    bool event(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
};

/// The search with its magnifier and a button that empties it.
class SearchField final : public QWidget {
public:
    explicit SearchField(QWidget* parent);

    SearchLineEdit& lineEdit() { return *m_lineEdit; }
    void render(const QString& query, bool isFocused, const ShelfTheme& theme);
    /// For text in the desktop's font.
    static int smallestHeight();

    std::function<void()> onClear;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    SearchLineEdit* m_lineEdit;
    SymbolButton* m_clearButton;
    ShelfTheme m_theme;
    Transition m_focus;
};

} // namespace kestrova
