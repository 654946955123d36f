#include "Kestrova/clipboard/PasteService.h"

#include "Kestrova/clipboard/OwnWrite.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/Accessibility.h"
#include "Platform/KeyPoster.h"
#include "Platform/Workspace.h"

namespace kestrova {

PasteboardEntry PasteService::entry(const ClipboardItem& item) {
    switch (item.type()) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
    case ClipboardItemType::url:
    case ClipboardItemType::color:
        break;
    case ClipboardItemType::image:
        if (auto png = item.imageData())
            return PngData{*std::move(png)};
        break;
    case ClipboardItemType::file:
        if (const auto url = fileURL(item))
            return FileReference{*url};
        break;
    }
    return PlainText{item.content()};
}

std::optional<QUrl> PasteService::fileURL(const ClipboardItem& item) {
    if (!item.fileURLString())
        return {};
    // "Parses as a URL" asks for a scheme: a bare path would be taken for a relative reference.
    const QUrl url(*item.fileURLString());
    return url.isValid() && !url.isRelative() ? std::optional(url) : std::nullopt;
}

void PasteService::write(const ClipboardItem& item, Pasteboard& pasteboard) {
    pasteboard.write(entry(item));
}

void PasteService::postPasteKeystroke(KeyPoster& keyPoster, const std::optional<RunningApplication>& target) {
    keyPoster.postPaste(target);
}

QCoro::Task<bool> PasteService::insertViaAccessibility(std::shared_ptr<ClipboardItem> item,
                                                       std::optional<RunningApplication> application,
                                                       Accessibility& accessibility,
                                                       const Workspace& workspace, Pasteboard& pasteboard) {
    const auto type = item->type();
    if (!application || type == ClipboardItemType::image || type == ClipboardItemType::file)
        co_return false;
    if (application->processIdentifier < 1 || workspace.isTerminated(*application))
        co_return false;
    if (!co_await accessibility.setSelectedText(*application, item->content()))
        co_return false;
    // What was pasted stands on the pasteboard too, as after every other paste.
    write(*item, pasteboard);
    ownWriteChangeCount = pasteboard.changeCount();
    co_return true;
}

} // namespace kestrova
