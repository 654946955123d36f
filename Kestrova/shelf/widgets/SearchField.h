#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/widgets/ShelfTheme.h"

#include <QLineEdit>
#include <QWidget>

#include <functional>

namespace kestrova {

class PanelButton;
class SymbolButton;

/// The text control of the search. What an input method is composing counts as text. Main thread only.
class SearchLineEdit final : public QLineEdit {
public:
    explicit SearchLineEdit(QWidget* parent);

    /// The text with what is being composed at the cursor.
    QString query() const;
    /// Puts `query` there. If it is there already, cursor, selection and composition stay.
    void show(const QString& query);

    /// The person has changed the query.
    std::function<void(const QString&)> onQueryChange;
    /// The keyboard has come or gone, but not merely with the window or for a popup.
    std::function<void(bool)> onFocusChange;

protected:
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void tellOfQuery();

    QString m_composed;
    bool m_isSilent = false;
    QString m_toldQuery;
};

/// The search with its magnifier and a button that empties it.
class SearchField final : public QWidget {
public:
    explicit SearchField(QWidget* parent);

    SearchLineEdit& lineEdit() { return *m_lineEdit; }
    void render(const QString& query, bool isFocused, const ShelfTheme& theme);

    std::function<void()> onClear;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    SearchLineEdit* m_lineEdit;
    SymbolButton* m_clearButton;
    ShelfTheme m_theme;
    Transition m_focus;
};

} // namespace kestrova
