#pragma once

#include "KestrovaCore/RecordValues.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class ModelContext;

/// A group of history items that a person made. An item can stand in any number of collections; names may
/// repeat.
///
/// Equality is that of the identifier, as with ClipboardItem. Main thread only.
class KovaCollection {
public:
    /// `createdAt` is now; there are no members.
    KovaCollection(QString name, std::int64_t sortOrder, std::optional<QString> icon,
                   std::optional<QString> colorHex);
    KovaCollection(const KovaCollection&) = delete;
    KovaCollection& operator=(const KovaCollection&) = delete;
    ~KovaCollection();

    CollectionID id() const { return m_id; }
    bool operator==(const KovaCollection& other) const {
        return this == &other || (m_id.value != 0 && m_id == other.m_id);
    }
    bool isDeleted() const { return m_deleted; }

    const KovaCollectionValues& values() const { return *m_values; }

    const QString& name() const { return m_values->name; }
    Timestamp createdAt() const { return m_values->createdAt; }
    /// Position among the collections, ascending.
    std::int64_t sortOrder() const { return m_values->sortOrder; }
    const std::optional<QString>& icon() const { return m_values->icon; }
    const std::optional<QString>& colorHex() const { return m_values->colorHex; }
    /// The members in the order of the history; absent while the collection is in no context.
    std::optional<std::vector<std::shared_ptr<ClipboardItem>>> items() const;

    void setName(const QString& name);
    void setSortOrder(std::int64_t sortOrder);
    void setIcon(const std::optional<QString>& symbolName);
    void setColorHex(const std::optional<QString>& colorHex);

private:
    friend class ModelContainer;
    friend class ModelContext;
    friend class StoreWriter;

    enum Field : std::uint32_t { Name = 1u << 0, SortOrder = 1u << 1, Icon = 1u << 2, ColorHex = 1u << 3 };

    KovaCollection(CollectionID id, std::shared_ptr<const KovaCollectionValues> values,
                   ModelContext& context);

    template<typename Edit>
    void change(Field field, Edit edit);
    void mergeSaved(const std::shared_ptr<const KovaCollectionValues>& saved);

    CollectionID m_id;
    std::shared_ptr<const KovaCollectionValues> m_values;
    ModelContext* m_context = nullptr;
    std::uint32_t m_changedFields = 0;
    bool m_deleted = false;
};

} // namespace kestrova
