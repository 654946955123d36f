#include "Platform/x11/PictureDecoding.h"

#include "Platform/x11/PasteboardLog.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 largestFile = 1'000'000'000;
const auto pngSignature = "\x89PNG\r\n\x1a\n"_ba;

// Walks the chunks: decoders are content with less than all of them.
bool endsProperly(const QByteArray& png) {
    constexpr qsizetype lengthAndName = 8;
    constexpr qsizetype checksum = 4;
    for (auto chunk = pngSignature.size(); chunk + lengthAndName + checksum <= png.size();) {
        const qsizetype length = qFromBigEndian<quint32>(png.constData() + chunk);
        if (length > png.size() - chunk - lengthAndName - checksum)
            return false;
        if (QByteArrayView(png).sliced(chunk + 4, 4) == "IEND")
            return true;
        chunk += lengthAndName + length + checksum;
    }
    return false;
}

bool isRegular(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_size <= largestFile;
}

} // namespace

void allowLargePictures() {
    constexpr int mebibytes = 2048;
    QImageReader::setAllocationLimit(mebibytes);
}

bool canDecodePicture(const QByteArray& mimeType) {
    static const auto decodable = QImageReader::supportedMimeTypes();
    return decodable.contains(mimeType);
}

std::optional<PasteboardImage> pictureFromBytes(const QByteArray& bytes) {
    const bool isPng = bytes.startsWith(pngSignature);
    if (isPng && !endsProperly(bytes))
        return {};
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    QImageReader reader{&source};
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(!isPng);
    QImage image;
    if (!reader.read(&image) || image.isNull())
        return {};
    if (isPng)
        return PasteboardImage{.png = bytes, .pixels = image.size()};

    PasteboardImage picture{.png = {}, .pixels = image.size()};
    QBuffer target{&picture.png};
    target.open(QIODevice::WriteOnly);
    QImageWriter writer{&target, "png"_ba};
    // Of the writer's scale: the fastest that still compresses. The best takes seconds for a display's worth.
    writer.setQuality(80);
    if (!writer.write(image)) {
        qCWarning(lcPasteboard, "[Pasteboard] A picture of %dx%d pixels could not be encoded: %ls",
                  image.width(), image.height(), qUtf16Printable(writer.errorString()));
        return {};
    }
    return picture;
}

std::optional<PasteboardImage> pictureFromFile(const QString& path) {
    const auto name = QFile::encodeName(path);
    struct stat status {};
    if (::stat(name.constData(), &status) != 0 || !isRegular(status))
        return {};
    // The file may have been replaced by a pipe meanwhile: do not wait for its writer, and look again.
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    QFile file;
    if (::fstat(descriptor, &status) != 0 || !isRegular(status) ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    return pictureFromBytes(file.read(largestFile));
}

} // namespace kestrova
