#include "Kestrova/capture/widgets/CapturedImageDragData.h"

#include "Kestrova/capture/CapturedImageFiles.h"

#include <QUrl>

namespace kestrova {
namespace {

QString png() {
    return QStringLiteral("image/png");
}

QString fileList() {
    return QStringLiteral("text/uri-list");
}

QVariant asList(const std::optional<QUrl>& url) {
    return url ? QVariant(QVariantList{*url}) : QVariant();
}

} // namespace

QStringList CapturedImageDragData::formats() const {
    return {png(), fileList()};
}

QVariant CapturedImageDragData::retrieveData(const QString& format, QMetaType) const {
    if (format == png())
        return m_payload.data;
    if (format != fileList())
        return {};
    if (!m_file)
        m_file = asList(m_files.write(m_payload));
    return *m_file;
}

} // namespace kestrova
