#pragma once

#include <QStringView>

#include <array>
#include <optional>

namespace kestrova {

/// Where a row of the history came from: the pasteboard (a drop and an undo count as it), or a capture of the
/// screen.
enum class ItemSource { clipboard, screenshot };

inline constexpr std::array allItemSources{ItemSource::clipboard, ItemSource::screenshot};

constexpr QStringView rawText(ItemSource source) {
    return source == ItemSource::screenshot ? QStringView(u"screenshot") : QStringView(u"clipboard");
}

/// The case with that raw text, to the letter; absent if there is none.
constexpr std::optional<ItemSource> itemSource(QStringView raw) {
    for (const auto source : allItemSources)
        if (rawText(source) == raw)
            return source;
    return std::nullopt;
}

} // namespace kestrova
