#pragma once

#include "Platform/Pasteboard.h"

namespace kestrova {

class ClipboardItem;

/// The low-level steps that bring an item back into the person's work. Stateless. Main thread only.
namespace PasteService {

/// What `item` is on the pasteboard: an image its PNG, a file a reference, all else its text. An image or a
/// file that lacks what it needs for that is its text as well.
PasteboardEntry entry(const ClipboardItem& item);

/// Puts `item` on the general pasteboard. The caller stores the counter in `ownWriteChangeCount` right
/// afterwards.
void write(const ClipboardItem& item, Pasteboard& pasteboard);

} // namespace PasteService
} // namespace kestrova
