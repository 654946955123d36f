#include "KestrovaCore/KovaCollection.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/ModelContext.h"

#include <utility>

namespace kestrova {

KovaCollection::KovaCollection(QString name, std::int64_t sortOrder, std::optional<QString> icon,
                               std::optional<QString> colorHex)
    : m_values(std::make_shared<const KovaCollectionValues>(KovaCollectionValues{
          std::move(name), currentTimestamp(), sortOrder, std::move(icon), std::move(colorHex)})) {}

KovaCollection::KovaCollection(CollectionID id, std::shared_ptr<const KovaCollectionValues> values,
                               ModelContext& context)
    : m_id(id), m_values(std::move(values)), m_context(&context) {}

KovaCollection::~KovaCollection() {
    if (m_context)
        m_context->forget(*this);
}

template<typename Edit>
void KovaCollection::change(Field field, Edit edit) {
    auto edited = std::make_shared<KovaCollectionValues>(*m_values);
    edit(*edited);
    m_values = std::move(edited);
    m_changedFields |= field;
    if (m_context)
        m_context->collectionChanged(*this);
}

void KovaCollection::mergeSaved(const std::shared_ptr<const KovaCollectionValues>& saved) {
    auto merged = *saved;
    if (m_changedFields & Name)
        merged.name = m_values->name;
    if (m_changedFields & SortOrder)
        merged.sortOrder = m_values->sortOrder;
    if (m_changedFields & Icon)
        merged.icon = m_values->icon;
    if (m_changedFields & ColorHex)
        merged.colorHex = m_values->colorHex;
    m_values = std::make_shared<const KovaCollectionValues>(std::move(merged));
}

std::optional<std::vector<std::shared_ptr<ClipboardItem>>> KovaCollection::items() const {
    return m_context ? std::optional{m_context->itemsOf(m_id)} : std::nullopt;
}

void KovaCollection::setName(const QString& name) {
    change(Name, [&](KovaCollectionValues& values) { values.name = name; });
}

void KovaCollection::setSortOrder(std::int64_t sortOrder) {
    change(SortOrder, [&](KovaCollectionValues& values) { values.sortOrder = sortOrder; });
}

void KovaCollection::setIcon(const std::optional<QString>& symbolName) {
    change(Icon, [&](KovaCollectionValues& values) { values.icon = symbolName; });
}

void KovaCollection::setColorHex(const std::optional<QString>& colorHex) {
    change(ColorHex, [&](KovaCollectionValues& values) { values.colorHex = colorHex; });
}

} // namespace kestrova
