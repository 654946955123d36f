#pragma once

#include <QPointF>
#include <QSizeF>
#include <QStringList>

class QPainter;

namespace kestrova {

struct ShelfTheme;

/// The small dark piece that tells a key: symbols, then a letter or a digit.
struct KeyCapsule {
    /// A capsule that lies on what the key does, or a keycap beside its name.
    enum class Form { chip, keycap };

    /// Names of symbols.
    QStringList symbols;
    QString letter;
    Form form = Form::chip;

    /// In points.
    QSizeF size() const;
    /// `shown` from 0, nothing, to 1, in full: it grows and fades in.
    void paint(QPainter& painter, QPointF center, const ShelfTheme& theme, double shown = 1) const;

private:
    double contentWidth() const;
    double letterWidth() const;
};

} // namespace kestrova
