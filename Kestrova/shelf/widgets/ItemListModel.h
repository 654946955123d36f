#pragma once

#include <QAbstractListModel>

#include <memory>
#include <vector>

namespace kestrova {

class ClipboardItem;

/// The items that the shelf shows, as rows. It makes no row before it is asked for one, and keeps no item:
/// one that is deleted goes at once with all that it holds, even while the shelf is out of sight and shows
/// nothing anew. Until then its row is empty.
class ItemListModel final : public QAbstractListModel {
public:
    using Items = std::vector<std::shared_ptr<ClipboardItem>>;

    using QAbstractListModel::QAbstractListModel;

    /// Shows these items. Answers whether they differ from those before.
    bool show(const Items& items);

    std::size_t size() const { return m_items.size(); }
    /// Null if there is no such row, or no such item any more.
    std::shared_ptr<ClipboardItem> item(const QModelIndex& index) const;
    std::shared_ptr<ClipboardItem> item(std::size_t row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<std::weak_ptr<ClipboardItem>> m_items;
};

} // namespace kestrova
