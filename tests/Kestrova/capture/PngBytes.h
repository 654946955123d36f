#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace kestrova {

inline QByteArray pngOf(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

} // namespace kestrova
