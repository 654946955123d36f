#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunningApplication.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace kestrova {

/// What was fetched of another program's entry.
struct FetchedSelection {
    QStringList types;
    QList<QUrl> urls;
    /// As the owner gave it, in whatever format.
    std::optional<QByteArray> image;
    std::optional<QString> text;
    std::optional<RunningApplication> frontmostApplication;
    /// The owner is the program whose window was in front.
    bool ownerInFront = false;
};

/// A fetched entry with its pictures decoded: all that the readers of a pasteboard answer from.
struct SelectionSnapshot {
    QStringList types;
    QList<QUrl> urls;
    std::optional<PasteboardImage> image;
    std::optional<QString> text;
    /// The picture in the file that the first URL names.
    std::optional<PasteboardImage> pictureOfFile;
    std::optional<RunningApplication> frontmostApplication;
    bool ownerInFront = false;
};

/// Decodes what there is to decode; a file only if its extension, in lower case, is one of
/// `pictureExtensions`. Callable from every thread; slow with pictures.
SelectionSnapshot decodedSnapshot(FetchedSelection fetched, const QSet<QString>& pictureExtensions);

/// Whether `snapshot` holds what `entry` puts on a pasteboard.
bool holds(const SelectionSnapshot& snapshot, const PasteboardEntry& entry);

/// The URLs of a text/uri-list in their order. Comments, relative references and what is no URL are left out.
QList<QUrl> urlsFromList(QByteArrayView list);

/// The text in `bytes` as the named target encodes it, without the final NULs that some owners count in.
QString textFromTarget(QByteArrayView target, QByteArrayView bytes);

} // namespace kestrova
