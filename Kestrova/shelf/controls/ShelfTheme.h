#pragma once

#include "Platform/Appearance.h"

#include <QColor>
#include <QFont>
#include <QStringView>

#include <optional>

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
    /// The same on the hint bar.
    QColor keycap;
    QColor hintBar;
    QColor hintBarStroke;
    QColor hintText;

    /// Round pictures and swatches.
    QColor hairline;
    QColor picturePlate;
    QColor scrollThumb;

    QColor dim;
    QColor card;
    /// Text of what cannot be taken back, on `card`.
    QColor destructive;

    /// The desktop's ordinary one, from which `interfaceFont` makes the others.
    QFont font;

    static ShelfTheme of(Scheme scheme);
    /// What `themePreference` says. Anything but "light" and "dark" follows the desktop: what it has been set
    /// to, else what the colours of its widgets look like.
    static Scheme scheme(QStringView preference, std::optional<Appearance::ColorScheme> desktop,
                         const QPalette& palette);

    /// What texts and lines are made of, white on the dark ground and black on the light one.
    QColor primary(double opacity) const;

    /// For text controls.
    QPalette palette() const;

    bool operator==(const ShelfTheme&) const = default;
};

} // namespace kestrova
