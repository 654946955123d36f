#include "Kestrova/shelf/ItemOperations.h"

#include "Kestrova/capture/HUDController.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/clipboard/PasteService.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/ModelContext.h"

namespace kestrova {

void ItemOperations::copy(const std::shared_ptr<ClipboardItem>& item) {
    PasteService::write(*item, m_pasteboard);
    ownWriteChangeCount = m_pasteboard.changeCount();
    m_hud.show(HUDEvent::copied, item);
}

void ItemOperations::togglePin(ClipboardItem& item) {
    item.setPinned(!item.pinned());
    save();
}

void ItemOperations::deleteItem(ClipboardItem& item) {
    m_context.remove(item);
    save();
}

void ItemOperations::save() {
    // The store has logged a failure and tries again with the next save.
    static_cast<void>(m_context.save());
}

} // namespace kestrova
