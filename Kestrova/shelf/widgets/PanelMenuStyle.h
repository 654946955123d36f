#pragma once

#include <QCommonStyle>

namespace kestrova {

/// Sizes and paints menus from the colours of their palette, whatever style the desktop has. How a menu is
/// walked with keys and pointer stays as the toolkit does it.
///
/// Base is the ground, Mid its edge and Midlight a divider; a line has Text, Highlight behind it,
/// PlaceholderText for its shortcut and while it is disabled.
class PanelMenuStyle final : public QCommonStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

} // namespace kestrova
