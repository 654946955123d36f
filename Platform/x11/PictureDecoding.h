#pragma once

#include "Platform/Pasteboard.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrova {

/// Lets pictures of displays and cameras through that the toolkit's limit refuses, and still stops those that
/// exist to exhaust the memory. Once, before the first picture is decoded; it holds for the whole process.
void allowLargePictures();

/// Whether pictures of this MIME type can be decoded here. Callable from every thread.
bool canDecodePicture(const QByteArray& mimeType);

/// The first picture in `bytes`, of whatever format the content shows. A sound PNG stays byte for byte; all
/// else becomes one. Absent if it cannot be decoded, or only in part. Callable from every thread; slow.
std::optional<PasteboardImage> pictureFromBytes(const QByteArray& bytes);

/// As `pictureFromBytes`, of a regular file of at most 1,000,000,000 bytes. Anything else is absent and never
/// opened: a pipe would wait for a writer for ever, a device may act on being opened.
std::optional<PasteboardImage> pictureFromFile(const QString& path);

} // namespace kestrova
