#pragma once

#include <QFont>
#include <QPointF>
#include <QString>
#include <QTextLayout>
#include <QTextOption>

#include <memory>

class QPainter;

namespace kestrova {

/// A text in lines of one width, and in no more of them than asked for: what is too long loses its middle or
/// its end. A text of megabytes costs no more than one of a page.
class WrappedText {
public:
    struct Form {
        QFont font;
        double width = 0;
        int mostLines = 1;
        Qt::TextElideMode elideMode = Qt::ElideRight;

        bool operator==(const Form&) const = default;
    };

    WrappedText(const QString& text, const Form& form);

    double height() const { return m_height; }
    /// Of the longest line.
    double width() const;
    bool isCut() const { return m_isCut; }
    /// In the painter's pen.
    void paint(QPainter& painter, QPointF topLeft) const;

private:
    std::unique_ptr<QTextLayout> m_layout;
    double m_height = 0;
    bool m_isCut = false;
};

} // namespace kestrova
