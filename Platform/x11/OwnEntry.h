#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/x11/SelectionSnapshot.h"

#include <QMimeData>

#include <memory>

namespace kestrova {

/// `entry` in the forms that programs of this desktop take, for the toolkit to serve.
std::unique_ptr<QMimeData> mimeDataFor(const PasteboardEntry& entry);

/// `entry` as a reader of the pasteboard finds it. A picture's size is read from its header.
SelectionSnapshot snapshotOf(const PasteboardEntry& entry);

} // namespace kestrova
