#include "Kestrova/detail/ItemEditView.h"

#include "Kestrova/detail/TypeWord.h"
#include "KestrovaCore/ClipboardItem.h"

#include <utility>

namespace kestrova {

ItemEditView::ItemEditView(std::shared_ptr<const ClipboardItem> edited, MainQueue& mainQueue,
                           Callbacks callbacks)
    : item(std::move(edited)),
      onSave(std::move(callbacks.onSave)),
      onCancel(std::move(callbacks.onCancel)),
      text(item->content()),
      m_mainQueue(mainQueue) {}

QString ItemEditView::title() const {
    return QStringLiteral("Edit ") + typeWord(item->type());
}

void ItemEditView::viewAppears() {
    m_focus = m_mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(), [this] {
        m_focus = {};
        editorFocused = true;
        if (onRender)
            onRender();
    });
}

void ItemEditView::save(const QString& edited) {
    text = edited;
    onSave(text);
}

} // namespace kestrova
