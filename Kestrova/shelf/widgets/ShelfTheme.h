#pragma once

#include <QColor>
#include <QFont>
#include <QStringView>

class QPalette;

namespace kestrova {

/// The colours of the shelf, and the font that it starts from. Those with an alpha are meant to lie on
/// `ground`, which itself lets a little of the desktop through; texts keep a contrast of 4.5 : 1 on all of
/// it.
struct ShelfTheme {
    enum class Scheme { light, dark };

    QColor ground;
    QColor border;
    QColor separator;

    QColor text;
    QColor secondaryText;
    QColor symbol;
    /// A button whose state is on, and one whose state is off.
    QColor activeSymbol;
    QColor inactiveSymbol;
    QColor accent;
    /// Behind marked text, which is white.
    QColor marking;

    // Grounds of rows.
    QColor selection;
    QColor hover;
    QColor sidebarHighlight;
    QColor laneBar;
    QColor idleBar;

    QColor field;
    QColor focusedField;
    QColor focusedFieldRing;

    QColor chip;
    QColor selectedChip;
    QColor chipRing;

    // The small capsules that show keys.
    QColor keyCapsule;
    QColor keyCapsuleStroke;
    QColor keyCapsuleText;

    /// Round pictures and swatches.
    QColor hairline;
    QColor picturePlate;
    QColor scrollThumb;

    QColor dim;
    QColor card;

    /// The desktop's ordinary one, from which `interfaceFont` makes the others.
    QFont font;

    static ShelfTheme of(Scheme scheme);
    /// What `themePreference` says; anything but "light" and "dark" follows the desktop.
    static Scheme scheme(QStringView preference, const QPalette& desktop);

    /// For text controls.
    QPalette palette() const;

    bool operator==(const ShelfTheme&) const = default;
};

} // namespace kestrova
