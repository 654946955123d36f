#include "Kestrova/shelf/ShelfTypes.h"

#include "KestrovaCore/ClipboardItem.h"

#include <array>

namespace kestrova {

std::pair<QString, QString> DetailRoute::stableKey() const {
    static const std::array words{QStringLiteral("preview"), QStringLiteral("edit"),
                                  QStringLiteral("actions")};
    return {words.at(static_cast<std::size_t>(kind)), QString::number(item->id().value)};
}

} // namespace kestrova
