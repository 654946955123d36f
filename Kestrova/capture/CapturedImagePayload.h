#pragma once

#include <QByteArray>
#include <QString>

namespace kestrova {

/// What a dragged preview hands to other applications: the PNG of a capture, as bytes or as a file.
struct CapturedImagePayload {
    QByteArray data;
    QString suggestedName;

    /// What both are called.
    QString fileName() const { return normalisedName(suggestedName); }
    /// `name` as a file can be called, with the extension of a PNG.
    static QString normalisedName(const QString& name);

    bool operator==(const CapturedImagePayload&) const = default;
};

} // namespace kestrova
