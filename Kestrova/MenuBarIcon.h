#pragma once

#include <QIcon>
#include <QPixmap>

#include <vector>

namespace kestrova {

/// The picture of the status item in the sizes that panels have. It reads on light and on dark ones alike,
/// since a panel does not say which it is.
class MenuBarIcon {
public:
    MenuBarIcon();

    /// `opacity` from 0 to 1.
    QIcon icon(double opacity = 1) const;

private:
    std::vector<QPixmap> m_pictures;
};

} // namespace kestrova
