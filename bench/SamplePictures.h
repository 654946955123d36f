#pragma once

#include <QByteArray>
#include <QSize>

#include <vector>

namespace kestrova::bench {

/// Pictures of a desktop with some windows, one of them with a photograph, as PNG; 1 to 2 MB at the default
/// size. The same in every run.
std::vector<QByteArray> samplePictures(int count, QSize size = {1920, 1080});

} // namespace kestrova::bench
