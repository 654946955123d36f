#include "Kestrova/shelf/widgets/ItemListModel.h"

#include "Kestrova/shelf/ItemRow.h"
#include "KestrovaCore/ClipboardItem.h"

#include <algorithm>

namespace kestrova {
namespace {

/// Also of one that has gone, whose place in memory may be another's by now.
bool isSame(const std::weak_ptr<ClipboardItem>& a, const std::shared_ptr<ClipboardItem>& b) {
    return !a.owner_before(b) && !b.owner_before(a);
}

} // namespace

bool ItemListModel::show(const Items& items) {
    if (std::ranges::equal(m_items, items, isSame))
        return false;
    // Rows are cheap to show anew, and a difference of two long lists is not cheap to find.
    beginResetModel();
    m_items.assign(items.begin(), items.end());
    endResetModel();
    return true;
}

std::shared_ptr<ClipboardItem> ItemListModel::item(const QModelIndex& index) const {
    return index.isValid() ? item(static_cast<std::size_t>(index.row())) : nullptr;
}

std::shared_ptr<ClipboardItem> ItemListModel::item(std::size_t row) const {
    return row < m_items.size() ? m_items[row].lock() : nullptr;
}

int ItemListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant ItemListModel::data(const QModelIndex& index, int role) const {
    const auto shown = item(index);
    if (!shown || (role != Qt::DisplayRole && role != Qt::AccessibleTextRole))
        return {};
    return primaryText(*shown);
}

} // namespace kestrova
