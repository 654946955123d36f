#pragma once

#include "Kestrova/capture/CapturedPicture.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <memory>

namespace kestrova {

/// A capture in the column of previews.
struct ThumbnailEntry {
    QUuid id = QUuid::createUuid();
    /// Shared by all copies of the entry.
    std::shared_ptr<CapturedPicture> image;
    QByteArray pngData;
    /// What a file of it would be called.
    QString suggestedName;
};

} // namespace kestrova
