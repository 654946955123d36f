#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "Kestrova/shelf/widgets/ShelfTheme.h"

#include <QWidget>

#include <optional>

namespace kestrova {

class ActionsCard;
class ItemContentView;
class ItemEditor;
class MainQueue;
class PictureDecoder;
class ShelfPanelView;

/// Lies over the lists while a detail screen is open: it dims them and shows the screen. What a screen
/// consists of lives only as long as it is open.
class DetailOverlay final : public QWidget {
public:
    /// All of them outlive it.
    DetailOverlay(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);

    void render(const ShelfTheme& theme);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void open(const DetailRoute& route);
    void close();
    void themeScreen();
    void arrange();
    /// The sheet that preview and edit lie on.
    QRect sheet() const;
    QRect hint() const;

    ShelfPanelView& m_view;
    MainQueue& m_mainQueue;
    PictureDecoder& m_decoder;
    std::optional<DetailRoute> m_route;
    ItemContentView* m_preview = nullptr;
    ItemEditor* m_editor = nullptr;
    ActionsCard* m_actions = nullptr;
    ShelfTheme m_theme;
    Transition m_entrance;
};

} // namespace kestrova
