#pragma once

#include <QString>
#include <QStringList>

namespace kestrova::test {

/// The files below `folder` whose bytes hold `text`, as UTF-8 or as UTF-16 of either byte order.
QStringList filesHolding(const QString& folder, const QString& text);

} // namespace kestrova::test
