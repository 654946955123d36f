#include "Kestrova/shelf/widgets/ItemListModel.h"

#include "Kestrova/shelf/ItemRow.h"
#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {

bool ItemListModel::show(const Items& items) {
    if (items == m_items)
        return false;
    // Rows are cheap to show anew, and a difference of two long lists is not cheap to find.
    beginResetModel();
    m_items = items;
    endResetModel();
    return true;
}

std::shared_ptr<ClipboardItem> ItemListModel::item(const QModelIndex& index) const {
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < m_items.size() ? m_items[row] : nullptr;
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
