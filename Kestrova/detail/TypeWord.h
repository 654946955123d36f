#pragma once

#include "KestrovaCore/ClipboardItemType.h"

#include <QString>

namespace kestrova {

/// What the detail screens call a kind of item: rich text is text, as it is for the person who copied it.
QString typeWord(ClipboardItemType type);

} // namespace kestrova
