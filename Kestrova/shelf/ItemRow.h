#pragma once

#include "KestrovaCore/ClipboardItemType.h"

#include <QColor>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <optional>

namespace kestrova {

class ClipboardItem;
struct RGBA;

/// What one row of the list shows of an item. Pure values, made anew whenever a row is painted.
struct ItemRow {
    /// Stands in front, unless a thumbnail or the swatch does.
    QString symbol;
    /// The item has a picture of which a thumbnail is to be shown.
    bool hasThumbnail = false;
    /// The colour that the item names.
    std::optional<QColor> swatch;
    QString primaryText;
    /// Absent: the ordinary colour of texts.
    std::optional<QColor> primaryColor;
    bool isPinned = false;
    /// The digit that pastes the row.
    std::optional<int> quickPasteIndex;

    /// `position` counts the rows from 0.
    static ItemRow of(const ClipboardItem& item, std::size_t position);
    bool operator==(const ItemRow&) const = default;
};

/// The symbol that stands for a kind of item, on rows and on chips.
QString symbolName(ClipboardItemType type);
/// The first 120 characters as a person counts them.
QStringView firstCharacters(QStringView text);
/// One line of text that tells what the item is.
QString primaryText(const ClipboardItem& item);
/// 0 is black, 1 is white; a colour with channels outside 0 to 1 may lie beyond.
double relativeLuminance(const RGBA& color);

} // namespace kestrova
