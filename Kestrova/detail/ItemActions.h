#pragma once

#include <QUrl>

#include <functional>
#include <memory>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;

/// What can be done with an item, as whoever shows it provides it. The callbacks are set unless they are told
/// to be optional.
struct ItemActions {
    std::shared_ptr<ClipboardItem> item;
    std::vector<std::shared_ptr<KovaCollection>> allCollections = {};
    /// The shelf is showing a collection that holds the item.
    bool isInCurrentCollection = false;
    std::function<void()> onPaste = {};
    std::function<void()> onCopy = {};
    /// Optional: only where the item can be edited in that way. So too `onEditImage`.
    std::function<void()> onEdit = {};
    std::function<void()> onEditImage = {};
    std::function<void()> onPreview = {};
    std::function<void()> onTogglePin = {};
    std::function<void(const std::shared_ptr<KovaCollection>&)> onToggleCollection = {};
    /// Optional: only while `isInCurrentCollection`.
    std::function<void()> onRemoveFromCurrentCollection = {};
    std::function<void()> onShare = {};
    std::function<void(const QUrl&)> onOpenURL = {};
    std::function<void(const QUrl&)> onShowInFinder = {};
    std::function<void()> onDelete = {};
    std::function<void()> onCancel = {};
};

} // namespace kestrova
