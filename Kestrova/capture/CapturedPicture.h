#pragma once

#include <QByteArray>
#include <QImage>

namespace kestrova {

/// A picture that has its PNG at hand, so that its pixels, which take many times the memory, can go and come
/// back. A copy may be used on another thread.
class CapturedPicture {
public:
    /// Without a PNG the pixels stay.
    CapturedPicture(QImage pixels, QByteArray pngData);

    /// Decodes them if they are gone, which is slow; null if the PNG is none.
    QImage pixels() const;
    bool holdsPixels() const { return !m_pixels.isNull(); }
    void letGoOfPixels();

private:
    QImage m_pixels;
    QByteArray m_pngData;
};

} // namespace kestrova
