#pragma once

#include <compare>
#include <cstdint>
#include <functional>

namespace kestrova {

/// The identity of one row of one kind of record: its row number in the store, which is never used again.
///
/// A row that was inserted into a context but is not yet saved has a temporary identifier. Temporary ones are
/// larger than all others, so that a new row sorts as the newest of its moment; the save replaces it.
template<typename Record>
struct PersistentIdentifier {
    static constexpr std::int64_t firstTemporary = std::int64_t{1} << 62;

    /// 0 for a record that no context has taken yet.
    std::int64_t value = 0;

    constexpr bool isTemporary() const { return value >= firstTemporary; }
    constexpr auto operator<=>(const PersistentIdentifier&) const = default;
};

class ClipboardItem;
class KovaCollection;
using ItemID = PersistentIdentifier<ClipboardItem>;
using CollectionID = PersistentIdentifier<KovaCollection>;

} // namespace kestrova

template<typename Record>
struct std::hash<kestrova::PersistentIdentifier<Record>> {
    std::size_t operator()(const kestrova::PersistentIdentifier<Record>& id) const noexcept {
        return std::hash<std::int64_t>{}(id.value);
    }
};
