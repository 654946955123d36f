#include "Platform/x11/DesktopIcons.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace kestrova {

using namespace Qt::StringLiterals;

void chooseFallbackIconTheme() {
    QIcon::setFallbackThemeName(u"Adwaita"_s);
}

QIcon iconNamed(const QString& name) {
    if (name.isEmpty())
        return {};
    // The toolkit makes an icon of any path. A pipe would hold up whoever looks into it.
    if (QDir::isAbsolutePath(name))
        return QFileInfo(name).isFile() && QImageReader(name).canRead() ? QIcon(name) : QIcon();
    QStringList names{name};
    // Many entries name the file as it lay in the folder of pictures that came before the themes.
    constexpr std::array endings{".png"_L1, ".svg"_L1, ".xpm"_L1};
    if (std::ranges::any_of(endings, [&](QLatin1StringView ending) { return name.endsWith(ending); }))
        names.append(name.chopped(4));
    return firstThemeIcon(names);
}

QIcon firstThemeIcon(const QStringList& names) {
    for (const auto& name : names)
        if (auto icon = QIcon::fromTheme(name); !icon.isNull())
            return icon;
    return {};
}

} // namespace kestrova
