#pragma once

#include <QImage>

#include <string>
#include <vector>

namespace kestrova::bench {

/// What a display may show while a picture of it is taken.
struct ScreenSample {
    std::string name;
    /// RGB32, of the display's size.
    QImage picture;
};

/// Windows with text on a plain ground, a photograph, and a page of text; the same in every run on a machine
/// with the same fonts. There must be a QGuiApplication.
std::vector<ScreenSample> screenSamples(QSize size);

/// The picture as the toolkit writes a PNG unless told otherwise.
QByteArray toolkitPng(const QImage& picture);

} // namespace kestrova::bench
