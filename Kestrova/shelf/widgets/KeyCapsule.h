#pragma once

#include <QPointF>
#include <QSizeF>
#include <QStringList>

class QPainter;

namespace kestrova {

struct ShelfTheme;

/// The small dark capsule that tells a key: symbols of modifiers, then a letter or a digit.
struct KeyCapsule {
    /// Names of symbols.
    QStringList modifiers;
    QString letter;

    /// In points.
    QSizeF size() const;
    /// `shown` from 0, nothing, to 1, in full: it grows and fades in.
    void paint(QPainter& painter, QPointF center, const ShelfTheme& theme, double shown = 1) const;

private:
    double textWidth() const;
};

} // namespace kestrova
