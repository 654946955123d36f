#pragma once

#include <QPoint>

#include <functional>

class QDragEnterEvent;
class QDragMoveEvent;
class QDropEvent;

namespace kestrova {

class ShelfPanelView;

/// Takes what is dropped on the shelf: its items on the rows of collections, these rows between each other,
/// and addresses and files from other programs on the lists. While something lies over the lists nothing is
/// taken. Whoever is taken from keeps what it had.
class DropDestination {
public:
    /// `view` outlives it.
    explicit DropDestination(ShelfPanelView& view) : m_view(view) {}

    // What the widget is told whose coordinates are those of `_tabFrames`.
    void enter(QDragEnterEvent& event);
    void move(QDragMoveEvent& event);
    void leave();
    void drop(QDropEvent& event);

    /// Whether the lists are at that place. It is set.
    std::function<bool(QPoint)> isOverLists;
    /// Something for the collections is at that place; it has left if there is none. Answers whether other
    /// rows are about to come to the place. It is set.
    std::function<bool(const QPoint*)> onHover;

private:
    enum class Kind { none, items, collection, addresses };

    Kind kindOf(const QDropEvent& event) const;
    bool isCovered() const;
    bool isTakenAt(QPoint place) const;
    void answer(QDropEvent& event, bool isTaken) const;
    bool take(const QDropEvent& event);

    ShelfPanelView& m_view;
    Kind m_kind = Kind::none;
};

} // namespace kestrova
