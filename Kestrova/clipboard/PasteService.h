#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunningApplication.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace kestrova {

class Accessibility;
class ClipboardItem;
class KeyPoster;
class Workspace;

/// The low-level steps that bring an item back into the person's work. Stateless. Main thread only.
namespace PasteService {

/// What `item` is on the pasteboard: an image its PNG, a file a reference, all else its text. An image or a
/// file that lacks what it needs for that is its text as well.
PasteboardEntry entry(const ClipboardItem& item);

/// The file that `item` stands for. Absent if what was stored of it cannot be read as a URL; there need be no
/// such file any more.
std::optional<QUrl> fileURL(const ClipboardItem& item);

/// Puts `item` on the general pasteboard. The caller stores the counter in `ownWriteChangeCount` right
/// afterwards.
void write(const ClipboardItem& item, Pasteboard& pasteboard);

/// Types the chord that pastes, into `target` if it is given and lives, else into whatever is in front.
void postPasteKeystroke(KeyPoster& keyPoster, const std::optional<RunningApplication>& target);

/// Tries to put the item's text straight into the focused element of `application`, without a key press and
/// without changing which application is in front. On success the item is on the pasteboard too, marked as an
/// own write. Pictures and files never go this way. The references must outlive the task.
QCoro::Task<bool> insertViaAccessibility(std::shared_ptr<ClipboardItem> item,
                                         std::optional<RunningApplication> application,
                                         Accessibility& accessibility, const Workspace& workspace,
                                         Pasteboard& pasteboard);

} // namespace PasteService
} // namespace kestrova
