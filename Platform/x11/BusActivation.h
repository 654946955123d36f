#pragma once

#include <QString>
#include <QUrl>

namespace kestrova {

/// Asks the application that has this name on the session bus, which starts it if it does not run, to open
/// the URL, with a token by which its window may come to the front. Comes back at once; a failure is logged.
void openOverBus(const QString& name, const QUrl& url);

} // namespace kestrova
