#include "Kestrova/clipboard/PasteService.h"

#include "KestrovaCore/ClipboardItem.h"

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
        if (item.fileURLString())
            // "Parses as a URL" asks for a scheme: a bare path would be taken for a relative reference.
            if (const QUrl url(*item.fileURLString()); url.isValid() && !url.isRelative())
                return FileReference{url};
        break;
    }
    return PlainText{item.content()};
}

void PasteService::write(const ClipboardItem& item, Pasteboard& pasteboard) {
    pasteboard.write(entry(item));
}

} // namespace kestrova
