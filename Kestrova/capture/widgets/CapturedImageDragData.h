#pragma once

#include "Kestrova/capture/CapturedImagePayload.h"

#include <QMimeData>
#include <QVariant>

#include <optional>
#include <utility>

namespace kestrova {

class CapturedImageFiles;

/// A dragged preview as drop destinations see it: the PNG first, then a file of it, which is written when
/// somebody asks for it.
class CapturedImageDragData final : public QMimeData {
public:
    /// `files` outlives it.
    CapturedImageDragData(CapturedImagePayload payload, CapturedImageFiles& files)
        : m_payload(std::move(payload)), m_files(files) {}

    bool hasFormat(const QString& format) const override { return formats().contains(format); }
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    CapturedImagePayload m_payload;
    CapturedImageFiles& m_files;
    /// Invalid if it cannot be written. Destinations ask more than once for the same one.
    mutable std::optional<QVariant> m_file;
};

} // namespace kestrova
