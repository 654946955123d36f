#pragma once

#include "tests/desktop/AccessibleTree.h"
#include "tests/desktop/KestrovaProgram.h"

#include <functional>

namespace kestrova::test {

/// The open shelf by what stands on it, each thing by the whole name that a screen reader speaks. What waits
/// answers false if nothing has come of it at the deadline.
class ShelfElements {
public:
    /// `assistive` outlives the object; the program has been started.
    ShelfElements(const AssistiveProgram& assistive, KestrovaProgram& program)
        : m_tree(assistive, program.process().pid()) {}

    /// The first that is showing; of this role, if one is given.
    std::optional<AccessibleElement> named(const QString& name, const QString& role = {}) const;
    bool waitFor(const QString& name, const QString& role = {}) const;
    bool waitUntilGone(const QString& name, const QString& role = {}) const;
    bool waitForFocus(const QString& name, const QString& role = {}) const;
    /// Of a button that stays down, a chip or a swatch.
    bool waitForChecked(const QString& name, bool isChecked) const;
    /// The name of what has the focus; empty if nothing has it.
    QString focused() const;
    /// In pixels of the display; empty if it is not showing.
    QRect frame(const QString& name, const QString& role = {}) const;

    /// The items in the order of the list or the grid, as "텍스트, words": without the key that pastes them.
    QStringList items() const;
    bool waitForItems(const QStringList& expected) const;
    /// Empty if none is selected.
    QString selectedItem() const;
    bool waitForSelectedItem(const QString& name) const;
    QRect frameOfItem(const QString& name) const;
    /// The frames of all items, in the same order as `items`.
    std::vector<QRect> framesOfItems() const;

    /// The chips from left to right.
    QStringList chips() const;
    /// The rows of the sidebar, as "전체, 항목 2개".
    QStringList lenses() const;
    QString selectedLens() const;
    bool waitForSelectedLens(const QString& name) const;

private:
    using Elements = std::vector<AccessibleElement>;

    Elements showing() const;
    /// What lies directly in the showing element of this name.
    Elements partsOf(const QString& name, const QString& role) const;
    Elements itemElements() const;

    AccessibleTree m_tree;
};

} // namespace kestrova::test
