#include "Kestrova/detail/widgets/WrappedText.h"

#include <QPainter>

#include <algorithm>

namespace kestrova {
namespace {

struct Layout {
    std::unique_ptr<QTextLayout> made;
    double height = 0;
    bool fits = false;
};

/// Stops at the first line too many.
Layout laidOut(const QString& text, const WrappedText::Form& form) {
    Layout layout{.made = std::make_unique<QTextLayout>(text, form.font)};
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.made->setTextOption(option);
    layout.made->setCacheEnabled(true);
    layout.made->beginLayout();
    int lines = 0;
    for (; lines <= form.mostLines; ++lines) {
        auto line = layout.made->createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(form.width);
        line.setPosition({0, layout.height});
        layout.height += line.height();
    }
    layout.made->endLayout();
    layout.fits = lines <= form.mostLines;
    return layout;
}

/// No half of a character that takes two units.
qsizetype whole(const QString& text, qsizetype position) {
    const bool isWithin = position > 0 && position < text.size() && text.at(position).isLowSurrogate() &&
                          text.at(position - 1).isHighSurrogate();
    return isWithin ? position - 1 : position;
}

QString cut(const QString& text, qsizetype kept, Qt::TextElideMode mode) {
    const auto atEnd = mode == Qt::ElideMiddle ? kept / 2 : 0;
    const auto start = QStringView(text).first(whole(text, kept - atEnd));
    return start.toString() + u'…' + text.sliced(whole(text, text.size() - atEnd));
}

} // namespace

WrappedText::WrappedText(const QString& text, const Form& form) {
    // More than there is room for in any script, as each try below lays out all of it.
    constexpr double narrowestLetter = 3;
    const auto most =
        std::max(static_cast<qsizetype>(form.mostLines * form.width / narrowestLetter), qsizetype{1});
    auto shown = text.size() > most ? cut(text, most, form.elideMode) : text;
    // A line ends where it is full and nowhere else.
    for (const auto newline : {u'\n', u'\r', u'\u2028', u'\u2029'})
        shown.replace(QChar(newline), u' ');
    m_isCut = text.size() > most;
    auto layout = laidOut(shown, form);
    if (!layout.fits) {
        m_isCut = true;
        qsizetype fitting = 0;
        for (auto step = std::max<qsizetype>(shown.size() / 2, 1); step > 0; step /= 2)
            while (fitting + step < shown.size() &&
                   laidOut(cut(shown, fitting + step, form.elideMode), form).fits)
                fitting += step;
        layout = laidOut(cut(shown, fitting, form.elideMode), form);
    }
    m_layout = std::move(layout.made);
    m_height = layout.height;
}

double WrappedText::width() const {
    double width = 0;
    for (int line = 0; line < m_layout->lineCount(); ++line)
        width = std::max(width, m_layout->lineAt(line).naturalTextWidth());
    return width;
}

void WrappedText::paint(QPainter& painter, QPointF topLeft) const {
    m_layout->draw(&painter, topLeft);
}

} // namespace kestrova
