#pragma once

#include <QByteArray>

#include <vector>

namespace kestrova::bench {

/// Pictures of a desktop with some windows, one of them with a photograph, 1920x1080, as PNG of 1 to 2 MB.
/// The same in every run.
std::vector<QByteArray> samplePictures(int count);

} // namespace kestrova::bench
