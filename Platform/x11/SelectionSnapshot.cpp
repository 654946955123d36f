#include "Platform/x11/SelectionSnapshot.h"

#include "Platform/x11/PictureDecoding.h"

#include <QFileInfo>
#include <QSysInfo>

#include <utility>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

// A file manager may name the machine that the file is on, which for us is no other.
void dropOwnHost(QUrl& url) {
    if (url.isLocalFile() && (url.host() == "localhost"_L1 ||
                              url.host().compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0))
        url.setHost({});
}

// Some file managers and toolkits send the zero that ends a C string along.
QByteArrayView withoutTerminator(QByteArrayView bytes) {
    while (bytes.endsWith('\0'))
        bytes.chop(1);
    return bytes;
}

struct IsHeldBy {
    const SelectionSnapshot& snapshot;

    bool operator()(const PlainText& own) const { return snapshot.text == own.text; }
    bool operator()(const PngData& own) const { return snapshot.image && snapshot.image->png == own.bytes; }
    bool operator()(const FileReference& own) const { return snapshot.urls == QList{own.url}; }
};

} // namespace

SelectionSnapshot decodedSnapshot(FetchedSelection fetched, const QSet<QString>& pictureExtensions) {
    SelectionSnapshot snapshot{.types = std::move(fetched.types),
                               .urls = std::move(fetched.urls),
                               .image = fetched.image ? pictureFromBytes(*fetched.image) : std::nullopt,
                               .text = std::move(fetched.text),
                               .pictureOfFile = {},
                               .frontmostApplication = std::move(fetched.frontmostApplication),
                               .ownerInFront = fetched.ownerInFront};
    if (!snapshot.urls.isEmpty() && snapshot.urls.first().isLocalFile()) {
        const auto path = snapshot.urls.first().toLocalFile();
        if (pictureExtensions.contains(QFileInfo(path).suffix().toLower()))
            snapshot.pictureOfFile = pictureFromFile(path);
    }
    return snapshot;
}

bool holds(const SelectionSnapshot& snapshot, const PasteboardEntry& entry) {
    return std::visit(IsHeldBy{snapshot}, entry);
}

QList<QUrl> urlsFromList(QByteArrayView list) {
    QList<QUrl> urls;
    for (const auto& rawLine : withoutTerminator(list).toByteArray().split('\n')) {
        const auto line = rawLine.trimmed();
        if (line.isEmpty() || line.startsWith('#') || line.contains('\0'))
            continue;
        auto url = QUrl::fromEncoded(line);
        if (!url.isValid() || url.isRelative())
            continue;
        dropOwnHost(url);
        urls.append(std::move(url));
    }
    return urls;
}

QString textFromTarget(QByteArrayView target, QByteArrayView bytes) {
    bytes = withoutTerminator(bytes);
    if (target == "STRING")
        return QString::fromLatin1(bytes);
    if (target == "text/plain" && !bytes.isValidUtf8())
        // No encoding is named, and it is not the one of today.
        return QString::fromLatin1(bytes);
    return QString::fromUtf8(bytes);
}

} // namespace kestrova
