#include "Platform/x11/OwnEntry.h"

#include <QBuffer>
#include <QImageReader>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

struct MimeDataOf {
    QMimeData& data;

    void operator()(const PlainText& entry) const { data.setText(entry.text); }
    void operator()(const PngData& entry) const { data.setData(u"image/png"_s, entry.bytes); }
    void operator()(const FileReference& entry) const {
        data.setUrls({entry.url});
        // What GTK file managers ask for before they offer to paste.
        if (entry.url.isLocalFile())
            data.setData(u"x-special/gnome-copied-files"_s, "copy\n"_ba + entry.url.toEncoded());
    }
};

struct SnapshotOf {
    SelectionSnapshot operator()(const PlainText& entry) const {
        SelectionSnapshot snapshot;
        snapshot.types = {PasteboardType::string};
        snapshot.text = entry.text;
        return snapshot;
    }
    SelectionSnapshot operator()(const PngData& entry) const {
        SelectionSnapshot snapshot;
        snapshot.types = {PasteboardType::image};
        QBuffer source;
        source.setData(entry.bytes);
        source.open(QIODevice::ReadOnly);
        snapshot.image =
            PasteboardImage{.png = entry.bytes, .pixels = QImageReader(&source, "png"_ba).size()};
        return snapshot;
    }
    SelectionSnapshot operator()(const FileReference& entry) const {
        SelectionSnapshot snapshot;
        snapshot.types = {PasteboardType::fileURL};
        snapshot.urls = {entry.url};
        return snapshot;
    }
};

} // namespace

std::unique_ptr<QMimeData> mimeDataFor(const PasteboardEntry& entry) {
    auto data = std::make_unique<QMimeData>();
    std::visit(MimeDataOf{*data}, entry);
    return data;
}

SelectionSnapshot snapshotOf(const PasteboardEntry& entry) {
    return std::visit(SnapshotOf{}, entry);
}

} // namespace kestrova
