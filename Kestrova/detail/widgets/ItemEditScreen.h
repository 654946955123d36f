#pragma once

#include "Kestrova/detail/ItemEditView.h"
#include "Kestrova/detail/widgets/DetailScreen.h"

#include <functional>
#include <memory>

class QKeyEvent;

namespace kestrova {

class EditorGround;
class SheetButton;

/// The text editor of an item, as a screen. Ctrl or Super with Return or S saves; Ctrl and the tabulator
/// leave the editor for the buttons.
class ItemEditScreen final : public DetailScreen {
public:
    /// `mainQueue` outlives it.
    ItemEditScreen(const std::shared_ptr<ClipboardItem>& item, MainQueue& mainQueue,
                   ItemEditView::Callbacks callbacks, QWidget* parent);

    void setTheme(const ShelfTheme& theme) override;
    /// Itself: the editor gets the keyboard on the next turn.
    QWidget& firstFocus() override { return *this; }
    const ItemEditView& view() const { return m_view; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    /// One of the two controls for text.
    struct Editor {
        QWidget* widget = nullptr;
        std::function<QString()> text;
        std::function<void(const ShelfTheme&)> setTheme;
    };

    static Editor makeEditor(const QString& text, QWidget* parent);
    void render();
    void save();
    /// Runs what the key stands for, if it is one of the screen's own.
    bool takes(const QKeyEvent& event);

    ItemEditView m_view;
    SheetButton* m_cancel;
    SheetButton* m_save;
    EditorGround* m_ground;
    Editor m_editor;
};

} // namespace kestrova
