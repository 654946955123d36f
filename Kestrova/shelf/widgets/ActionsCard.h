#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace kestrova {

class ActionRow;
class ClipboardItem;
class ShelfPanelView;

/// What can be done to one item.
class ActionsCard final : public QWidget {
public:
    /// `view` outlives it.
    ActionsCard(ShelfPanelView& view, const std::shared_ptr<ClipboardItem>& item, QWidget* parent);

    void setTheme(const ShelfTheme& theme);
    int heightForContent() const;

    static constexpr int width = 380;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    template<typename Act>
    void add(const QString& title, Act act);

    ShelfPanelView& m_view;
    std::shared_ptr<ClipboardItem> m_item;
    std::vector<ActionRow*> m_rows;
    ShelfTheme m_theme;
};

} // namespace kestrova
