#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/SampleHistory.h"

#include <QFileInfo>

namespace kestrova::bench {

void measureBytesOnDisk(const QString& directory) {
    constexpr int texts = 5'000;
    constexpr int pictures = 200;
    const FilledStore ofTexts = fillStore(directory + QStringLiteral("/texts"), {.texts = texts});
    print({.name = "bytes on disk a text of 400 characters",
           .unit = "B",
           .measured = static_cast<double>(QFileInfo(ofTexts.file).size()) / texts,
           .floor = static_cast<double>(ofTexts.textBytes) / texts,
           .floorName = "its content in UTF-8"});
    const FilledStore ofPictures = fillStore(directory + QStringLiteral("/pictures"), {.pictures = pictures});
    print({.name = "kilobytes on disk a picture of 1920x1080",
           .unit = "kB",
           .measured = static_cast<double>(QFileInfo(ofPictures.file).size()) / pictures / 1000,
           .floor = static_cast<double>(ofPictures.pictureBytes) / pictures / 1000,
           .floorName = "its bytes as PNG"});
}

} // namespace kestrova::bench
