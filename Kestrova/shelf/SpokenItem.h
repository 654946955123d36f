#pragma once

#include "KestrovaCore/ClipboardItemType.h"

#include <QString>

#include <cstddef>

namespace kestrova {

class ClipboardItem;

// What is shown of items by symbols, places and colours, in words for people who cannot see them.

/// The kind, as the chips tell it: rich text is text.
QString spokenName(ClipboardItemType type);
/// What the item is and what is special about it. `position` counts from 0 and decides whether a digit
/// pastes it.
QString spokenName(const ClipboardItem& item, std::size_t position);
/// Where it stands, counted from 1, among how many.
QString spokenPosition(std::size_t position, std::size_t count);
QString spokenCount(std::size_t count);

} // namespace kestrova
