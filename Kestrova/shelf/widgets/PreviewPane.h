#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "KestrovaCore/PersistentIdentifier.h"

#include <QElapsedTimer>
#include <QWidget>

#include <optional>

namespace kestrova {

class DetailView;
class EmptyDetailState;
class HintBar;
class ShelfPanelView;
struct DetailSurroundings;

/// The look at the current item, and which keys do what to it.
class PreviewPane final : public QWidget {
public:
    /// All of them outlive it.
    PreviewPane(ShelfPanelView& view, const DetailSurroundings& surroundings, QWidget* parent);

    void render(const ShelfTheme& theme);
    /// While nothing is rendered: drops an item that has been deleted.
    void forgetDeleted();

    static constexpr int width = 480;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// A picture of what was shown before, which fades.
    class Former;

    void showChange(std::optional<ItemID> from, std::optional<ItemID> to);
    void arrange();

    ShelfPanelView& m_view;
    DetailView* m_detail;
    EmptyDetailState* m_emptyState;
    /// One of the two.
    QWidget* m_content;
    HintBar* m_hints;
    Former* m_former;
    std::optional<ItemID> m_shown;
    /// From the bottom edge.
    Transition m_entrance;
    Transition m_change;
    QElapsedTimer m_sinceChange;
};

} // namespace kestrova
