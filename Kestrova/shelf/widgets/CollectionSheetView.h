#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <optional>

namespace kestrova {

class CollectionSheetCard;
class ShelfPanelView;

/// Lies over the whole shelf while a collection is made or changed: it dims the shelf, keeps keys and clicks
/// from it, and shows the sheet. The card lives only as long as the sheet is open.
class CollectionSheetView final : public QWidget {
public:
    /// `view` outlives it.
    CollectionSheetView(ShelfPanelView& view, QWidget* parent);

    void render(const ShelfTheme& theme);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void open(const CollectionEditSheet& sheet);
    void close();
    void makeCard();
    void submit();
    void step();
    void arrange();
    /// Runs a change of the open sheet.
    template<typename Change>
    void change(Change&& change);

    ShelfPanelView& m_view;
    std::optional<CollectionEditSheet::Mode> m_mode;
    CollectionSheetCard* m_card = nullptr;
    ShelfTheme m_theme;
    Transition m_entrance;
};

} // namespace kestrova
