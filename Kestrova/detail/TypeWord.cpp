#include "Kestrova/detail/TypeWord.h"

namespace kestrova {

QString typeWord(ClipboardItemType type) {
    switch (type) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return QStringLiteral("Text");
    case ClipboardItemType::image:
        return QStringLiteral("Image");
    case ClipboardItemType::file:
        return QStringLiteral("File");
    case ClipboardItemType::url:
        return QStringLiteral("Link");
    case ClipboardItemType::color:
        return QStringLiteral("Color");
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
