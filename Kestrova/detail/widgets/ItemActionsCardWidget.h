#pragma once

#include "Kestrova/detail/ItemActionsCard.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QScrollArea;

namespace kestrova {

class ActionRowButton;
class ThinScrollBar;

/// Paints the card. While it is on the screen, the card's keys are its own.
class ItemActionsCardWidget final : public QWidget {
public:
    /// `title` says in a line what the item is.
    ItemActionsCardWidget(std::unique_ptr<ItemActionsCard> card, QString title, QWidget* parent);
    ~ItemActionsCardWidget() override;

    static constexpr int width = 380;
    /// `heightForContent` has another value now.
    std::function<void()> onHeightChange;

    ItemActionsCard& card() { return *m_card; }
    void setTheme(const ShelfTheme& theme);
    /// Shows what the card says now.
    void render();
    /// With which it need not be scrolled.
    int heightForContent() const;
    /// On the screen: where a menu stands that the highlighted row asks for.
    QPoint placeOfMenu() const;
    /// The pointer rather than the keys has lit that row up.
    bool isPointedAt() const { return m_card->hoveredIndex.has_value(); }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void makeRows(std::size_t count);
    void arrange();
    void pointerMoved(std::ptrdiff_t row, QPoint globalPosition);
    /// Where readers take the person to be.
    void focusSelectedRow();
    QRect titleLine() const;
    int listTop() const;

    std::unique_ptr<ItemActionsCard> m_card;
    const QString m_title;
    ShelfTheme m_theme;
    QScrollArea* m_scrollArea;
    ThinScrollBar* m_scrollBar;
    QWidget* m_list;
    std::vector<ActionRowButton*> m_rows;
    // On the screen.
    QPoint m_pointer;
    /// The row that was last brought into sight.
    std::pair<CardScreen, std::ptrdiff_t> m_shown{CardScreen::root, 0};
};

} // namespace kestrova
