#pragma once

#include <QString>

class QPainter;
class QRectF;

namespace kestrova {

struct ShelfTheme;

/// What stands where a list or grid has nothing to show: a symbol and two texts below it.
struct ListEmptyState {
    QString symbol;
    QString title;
    QString hint;

    /// In the middle of `area`; texts that are too wide for it take more lines.
    void paint(QPainter& painter, const QRectF& area, const ShelfTheme& theme) const;
};

} // namespace kestrova
