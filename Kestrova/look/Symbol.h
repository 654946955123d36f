#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace kestrova {

/// One of the program's own drawings, named by what they stand for. Drawn in any colour and at any
/// size; the last drawings are kept. Main thread only.
class Symbol {
public:
    explicit Symbol(QString name) : m_name(std::move(name)) {}

    bool exists() const;
    /// `edge` in points; null if there is no such symbol.
    QPixmap pixmap(double edge, double devicePixelRatio, const QColor& color) const;
    /// Draws it in the centre of `frame`, `edge` points wide and high, on whole device pixels.
    void paint(QPainter& painter, const QRectF& frame, double edge, const QColor& color) const;

    /// The edge of a symbol that stands beside text of that size, as `interfaceFont` takes it.
    static constexpr double edgeFor(double textSize) { return static_cast<int>(textSize * 1.2 + 0.5); }

private:
    QString path() const;

    QString m_name;
};

} // namespace kestrova
