#pragma once

#include "Kestrova/services/LinkPreviewCache.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <optional>

namespace kestrova {

class ClipboardItem;

/// What one card of the grid shows of an item. Pure values, made anew whenever a card is painted.
struct ItemGridCard {
    // The region at the top shows the first of these that is there.
    /// The item has a picture of which a thumbnail is to be shown.
    bool hasThumbnail = false;
    /// The colour that the item names.
    std::optional<QColor> swatch;
    /// The picture of the page that the item leads to; null without one.
    QImage linkPicture;
    /// The beginning of the text, with its lines.
    std::optional<QString> text;
    /// The symbol that stands there if nothing else can.
    QString placeholder;

    bool isPinned = false;

    /// The title of the page that the item leads to; empty: the caption stands alone.
    QString title;
    /// Of the page's site, before the caption; null without one.
    QImage favicon;
    QString caption;

    /// `preview`: what is known of the page behind a link.
    static ItemGridCard of(const ClipboardItem& item,
                           const std::optional<LinkPreviewCache::Preview>& preview);
    bool operator==(const ItemGridCard&) const = default;
};

} // namespace kestrova
