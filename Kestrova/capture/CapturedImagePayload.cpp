#include "Kestrova/capture/CapturedImagePayload.h"

namespace kestrova {
namespace {

/// Without the dot; a name that only begins with one has none.
QStringView pathExtension(QStringView name) {
    const auto dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.sliced(dot + 1) : QStringView();
}

} // namespace

QString CapturedImagePayload::normalisedName(const QString& name) {
    auto normalised = name.trimmed();
    if (normalised.isEmpty())
        return QStringLiteral("Screenshot.png");
    normalised.replace(u'/', u'-').replace(u':', u'-');
    if (pathExtension(normalised).compare(u"png", Qt::CaseInsensitive) != 0)
        normalised += QStringLiteral(".png");
    return normalised;
}

} // namespace kestrova
