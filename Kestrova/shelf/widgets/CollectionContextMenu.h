#pragma once

#include "Kestrova/shelf/controls/Ground.h"

#include <QPoint>

#include <memory>

class QWidget;

namespace kestrova {

class KovaCollection;
class PanelMenu;
class ShelfPanelView;
struct ShelfTheme;

/// Opens the menu of a collection's row at a place of the screen. What the person chooses goes to the state,
/// which outlives the menu; the menu belongs to `window`.
PanelMenu& openCollectionMenu(ShelfPanelView& view, const std::shared_ptr<KovaCollection>& collection,
                              QPoint globalPosition, const ShelfTheme& theme, Ground ground, QWidget& window);

} // namespace kestrova
