#pragma once

#include "KestrovaCore/ClipboardItemType.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace kestrova {

class ClipboardItem;

/// The page that an item leads to; absent if it is no link or the link cannot be read.
std::optional<QUrl> linkOf(const ClipboardItem& item);
/// The same of an item of that type with that content.
std::optional<QUrl> linkOf(ClipboardItemType type, const QString& content);

/// The name at the end of a path. Slashes behind it do not matter; of the root folder it is the slash.
QString lastPathComponent(const QString& path);

} // namespace kestrova
