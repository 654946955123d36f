#pragma once

#include <QAccessibleWidget>

#include <unordered_map>

class QModelIndex;

namespace kestrova {

class ItemView;

/// The list or the grid for programs that read to people who cannot see: a list, and an entry for each item,
/// made when it is asked for. What an entry says is what is shown at its place now.
class ItemViewAccessible final : public QAccessibleWidget {
public:
    explicit ItemViewAccessible(ItemView& view);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

protected:
    ~ItemViewAccessible() override;

private:
    ItemView& m_view;
    // What has been asked for, by row.
    mutable std::unordered_map<int, QAccessible::Id> m_items;
};

/// Has each list and grid made one when it is asked for. May be called again.
void installItemViewAccessibility();

} // namespace kestrova
