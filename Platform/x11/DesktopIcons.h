#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

namespace kestrova {

/// Where no desktop says which icon theme is in use, the toolkit knows the icons that programs bring along
/// and no others. From now on it looks where the programs of other toolkits look then.
void chooseFallbackIconTheme();

/// The icon that a desktop entry names: a name of the theme, or the absolute path of a picture. Null if there
/// is none or it cannot be read. Main thread only.
QIcon iconNamed(const QString& name);

/// The first of the names that the theme has an icon for; null if it has none. Main thread only.
QIcon firstThemeIcon(const QStringList& names);

} // namespace kestrova
