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

Result<Done, StoreError> ItemOperations::togglePin(ClipboardItem& item) {
    item.setPinned(!item.pinned());
    return m_context.save();
}

Result<Done, StoreError> ItemOperations::deleteItem(ClipboardItem& item) {
    m_context.remove(item);
    return m_context.save();
}

} // namespace kestrova
