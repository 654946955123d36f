#pragma once

#include <QAbstractListModel>

#include <memory>
#include <vector>

namespace kestrova {

class ClipboardItem;

/// The items that the shelf shows, as rows. It makes no row before it is asked for one.
class ItemListModel final : public QAbstractListModel {
public:
    using Items = std::vector<std::shared_ptr<ClipboardItem>>;

    /// Shows these items. Answers whether they differ from those before.
    bool show(const Items& items);

    const Items& items() const { return m_items; }
    /// Null if there is no such row.
    std::shared_ptr<ClipboardItem> item(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    Items m_items;
};

} // namespace kestrova
