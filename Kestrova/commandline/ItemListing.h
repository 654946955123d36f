#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <span>

namespace kestrova {

class ClipboardItem;

/// An array of objects with the names of the store's columns, the picture left out: `id` as text,
/// `collections` as names, times as ISO 8601 with milliseconds, absent values as null.
QByteArray jsonListing(std::span<const std::shared_ptr<ClipboardItem>> items);

/// A table for people, one line an item.
QByteArray tableListing(std::span<const std::shared_ptr<ClipboardItem>> items);

/// A text of any origin on one line of a terminal: cut after 120 characters, line breaks as blanks, trimmed.
QString oneLine(const QString& text);

} // namespace kestrova
