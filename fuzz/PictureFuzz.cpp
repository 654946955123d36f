#include "Platform/x11/PictureDecoding.h"

using namespace kestrova;

/// A picture that another program offers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto picture = pictureFromBytes(bytes); picture && picture->pixels.isEmpty())
        qFatal("A picture without a pixel is taken for one.");
    return 0;
}
