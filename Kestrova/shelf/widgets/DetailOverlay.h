#pragma once

#include "Kestrova/detail/widgets/DetailSurroundings.h"
#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>

namespace kestrova {

class DetailScreen;
class ItemActionsCardWidget;
class ShelfPanelView;

/// Lies over the lists while a detail screen is open. A screen comes from the edge of the panel and goes back
/// there; its controls live only as long as it is open, so that one that goes can no longer be used.
class DetailOverlay final : public QWidget {
public:
    /// All of it outlives it.
    DetailOverlay(ShelfPanelView& view, const DetailSurroundings& surroundings, QWidget* parent);

    void render(const ShelfTheme& theme);
    /// Null while it is not open.
    const ItemActionsCardWidget* actionsCard() const { return m_card; }

protected:
    bool focusNextPrevChild(bool next) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    enum class Edge { trailing, bottom };

    /// What is open, and how it is shown a theme.
    struct Screen {
        QWidget* widget = nullptr;
        /// Takes the keyboard.
        QWidget* focus = nullptr;
        std::function<void(const ShelfTheme&)> setTheme;
        /// Shows what the state says now. Empty if the screen shows nothing that changes.
        std::function<void()> followState = {};
        Edge edge = Edge::trailing;
    };
    /// A picture of the screen that was closed last, which still goes.
    struct Leaving {
        QPixmap picture;
        QRect place;
        Edge edge = Edge::trailing;
    };

    void open(const DetailRoute& route);
    void close();
    void step();
    void leave();
    Screen makePreview(const DetailRoute& route);
    Screen makeEditor(const DetailRoute& route);
    Screen makeActions(const DetailRoute& route);
    static Screen screenOf(DetailScreen& screen);
    /// Where the screen is at rest.
    QRect placeOfScreen() const;
    /// The same, that far on its way from the edge, from 0 to 1.
    QPoint onItsWay(const QRect& place, Edge edge, double shown) const;

    ShelfPanelView& m_view;
    DetailSurroundings m_surroundings;
    std::optional<DetailRoute> m_route;
    Screen m_screen;
    /// The screen if it is the card.
    ItemActionsCardWidget* m_card = nullptr;
    Leaving m_leaving;
    ShelfTheme m_theme;
    Transition m_entrance;
    Transition m_exit;
    Transition m_dim;
};

} // namespace kestrova
