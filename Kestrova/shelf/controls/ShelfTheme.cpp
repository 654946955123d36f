#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QApplication>
#include <QPalette>

namespace kestrova {
namespace {

QColor faded(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

ShelfTheme dark() {
    const QColor white(255, 255, 255);
    const QColor black(0, 0, 0);
    const QColor accent(10, 132, 255);
    ShelfTheme theme;
    theme.ground = QColor(30, 30, 34, 245);
    theme.border = faded(white, 0.08);
    theme.separator = faded(white, 0.14);
    theme.text = faded(white, 0.85);
    theme.secondaryText = faded(white, 0.65);
    theme.symbol = faded(white, 0.7);
    theme.activeSymbol = white;
    theme.inactiveSymbol = faded(white, 0.4);
    theme.accent = accent;
    theme.marking = QColor(0, 100, 210);
    theme.selection = faded(accent, 0.34);
    theme.hover = faded(white, 0.07);
    theme.sidebarHighlight = faded(white, 0.14);
    theme.laneBar = faded(white, 0.9);
    theme.idleBar = faded(white, 0.55);
    theme.field = faded(white, 0.04);
    theme.focusedField = faded(white, 0.1);
    theme.focusedFieldRing = faded(accent, 0.55);
    theme.chip = faded(white, 0.06);
    theme.selectedChip = faded(white, 0.2);
    theme.chipRing = faded(white, 0.6);
    theme.keyCapsule = faded(black, 0.55);
    theme.keycap = faded(black, 0.45);
    theme.keyCapsuleStroke = faded(white, 0.15);
    theme.keyCapsuleText = white;
    theme.hintBar = faded(white, 0.1);
    theme.hintBarStroke = faded(white, 0.15);
    theme.hintText = faded(white, 0.75);
    theme.hairline = faded(white, 0.2);
    theme.picturePlate = faded(white, 0.05);
    theme.scrollThumb = faded(white, 0.25);
    theme.dim = faded(black, 0.4);
    theme.card = QColor(44, 44, 49);
    theme.destructive = QColor(255, 140, 132);
    return theme;
}

/// What is white on the dark ground is black on the light one.
ShelfTheme light() {
    const QColor white(255, 255, 255);
    const QColor black(0, 0, 0);
    const QColor accent(0, 110, 230);
    ShelfTheme theme;
    theme.ground = QColor(246, 246, 248, 245);
    theme.border = faded(black, 0.08);
    theme.separator = faded(black, 0.14);
    theme.text = faded(black, 0.85);
    theme.secondaryText = faded(black, 0.64);
    theme.symbol = faded(black, 0.62);
    theme.activeSymbol = black;
    // More than on the dark ground: it is a symbol that means something, and must be seen.
    theme.inactiveSymbol = faded(black, 0.47);
    theme.accent = accent;
    theme.marking = QColor(0, 100, 210);
    theme.selection = faded(accent, 0.18);
    theme.hover = faded(black, 0.05);
    theme.sidebarHighlight = faded(black, 0.14);
    theme.laneBar = faded(black, 0.9);
    theme.idleBar = faded(black, 0.55);
    theme.field = faded(black, 0.04);
    theme.focusedField = faded(black, 0.1);
    theme.focusedFieldRing = faded(accent, 0.55);
    theme.chip = faded(black, 0.06);
    theme.selectedChip = faded(black, 0.2);
    theme.chipRing = faded(black, 0.6);
    theme.keyCapsule = faded(black, 0.55);
    // Its letters are white here too.
    theme.keycap = faded(black, 0.52);
    theme.keyCapsuleStroke = faded(white, 0.15);
    theme.keyCapsuleText = white;
    theme.hintBar = faded(black, 0.1);
    theme.hintBarStroke = faded(black, 0.15);
    theme.hintText = faded(black, 0.75);
    theme.hairline = faded(black, 0.2);
    theme.picturePlate = faded(black, 0.04);
    theme.scrollThumb = faded(black, 0.25);
    theme.dim = faded(black, 0.4);
    theme.card = QColor(252, 252, 253);
    theme.destructive = QColor(186, 22, 22);
    return theme;
}

} // namespace

ShelfTheme ShelfTheme::of(Scheme scheme) {
    auto theme = scheme == Scheme::dark ? dark() : light();
    theme.font = QApplication::font();
    return theme;
}

ShelfTheme::Scheme ShelfTheme::scheme(QStringView preference, std::optional<Appearance::ColorScheme> desktop,
                                      const QPalette& palette) {
    if (preference == u"light")
        return Scheme::light;
    if (preference == u"dark")
        return Scheme::dark;
    if (desktop)
        return *desktop == Appearance::ColorScheme::dark ? Scheme::dark : Scheme::light;
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness()
               ? Scheme::dark
               : Scheme::light;
}

QColor ShelfTheme::primary(double opacity) const {
    return faded(text, opacity);
}

QPalette ShelfTheme::palette() const {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Window, Qt::transparent);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::PlaceholderText, secondaryText);
    palette.setColor(QPalette::Highlight, marking);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace kestrova
