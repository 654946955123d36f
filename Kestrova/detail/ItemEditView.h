#pragma once

#include "Platform/MainQueue.h"

#include <QString>

#include <functional>
#include <memory>

namespace kestrova {

class ClipboardItem;

/// The text editor of an item: what is being edited, and what becomes of it. Main thread only.
class ItemEditView {
public:
    /// All of them are set.
    struct Callbacks {
        std::function<void(const QString&)> onSave;
        std::function<void()> onCancel;
    };

    /// `mainQueue` outlives it.
    ItemEditView(std::shared_ptr<const ClipboardItem> edited, MainQueue& mainQueue, Callbacks callbacks);

    QString title() const;
    /// On the next turn the editor gets the keyboard.
    void viewAppears();
    /// The keyboard has come to the editor, or has left it for something else on the screen.
    void editorFocusChanged(bool isFocused) { editorFocused = isFocused; }
    /// The control holds what is typed and hands it over here: no key may cost a copy of a huge text.
    void save(const QString& edited);
    void cancel() const { onCancel(); }

    /// The moment to paint.
    std::function<void()> onRender;

    const std::shared_ptr<const ClipboardItem> item;
    std::function<void(const QString&)> onSave;
    std::function<void()> onCancel;
    /// The working copy: the item's content at first, then what was saved last.
    QString text;
    bool editorFocused = false;

private:
    MainQueue& m_mainQueue;
    ScheduledBlock m_focus;
};

} // namespace kestrova
