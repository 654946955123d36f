#include "Kestrova/shelf/widgets/ItemDragData.h"

namespace kestrova {
namespace {

QString plainText() {
    return QStringLiteral("text/plain");
}

} // namespace

QStringList ItemDragData::formats() const {
    // No list of addresses, even for a file: an editor would open it instead of taking the text.
    return {ItemDragPayload::contentType(), plainText()};
}

QVariant ItemDragData::retrieveData(const QString& format, QMetaType) const {
    if (format == ItemDragPayload::contentType())
        return m_payload.encoded();
    if (format == plainText())
        return m_payload.exportText;
    return {};
}

} // namespace kestrova
