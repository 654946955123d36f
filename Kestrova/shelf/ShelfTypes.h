#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace kestrova {

class KovaCollection;

/// The outline of the shelf, in points.
namespace ShelfFrame {
inline constexpr int width = 960;
inline constexpr int widthWithoutSidebar = 760;
inline constexpr int height = 540;
inline constexpr double cornerRadius = 12;
} // namespace ShelfFrame

/// The lenses that are no collection: all, pinned and screenshots. They are the first rows of the sidebar.
inline constexpr std::size_t fixedLensCount = 3;
/// So many rows or chips a digit reaches.
inline constexpr std::size_t shortcutDigits = 9;

enum class ShelfViewMode { list, grid };

/// Which strip of the panel the arrow keys work in. In grid mode the lane is still `list`; nothing sets
/// `grid`.
enum class KeyboardLane { search, sidebar, tags, list, grid };

/// The sidebar lens: which part of the history is looked at.
class CollectionFilter {
public:
    enum class Kind { collection, all, pinned, screenshots };

    static CollectionFilter collection(CollectionID id) { return {Kind::collection, id}; }
    static CollectionFilter all() { return {Kind::all, {}}; }
    static CollectionFilter pinned() { return {Kind::pinned, {}}; }
    static CollectionFilter screenshots() { return {Kind::screenshots, {}}; }

    Kind kind() const { return m_kind; }
    /// Only of the kind `collection`.
    CollectionID collectionID() const { return m_collection; }

    bool operator==(const CollectionFilter&) const = default;

private:
    CollectionFilter(Kind kind, CollectionID collection) : m_kind(kind), m_collection(collection) {}

    Kind m_kind;
    CollectionID m_collection;
};

/// Which detail screen lies over the lists, and for which item. It keeps an item that is deleted meanwhile.
struct DetailRoute {
    enum class Kind { preview, edit, actions };

    static DetailRoute preview(std::shared_ptr<ClipboardItem> item) {
        return {Kind::preview, std::move(item)};
    }
    static DetailRoute edit(std::shared_ptr<ClipboardItem> item) { return {Kind::edit, std::move(item)}; }
    static DetailRoute actions(std::shared_ptr<ClipboardItem> item) {
        return {Kind::actions, std::move(item)};
    }

    Kind kind;
    std::shared_ptr<ClipboardItem> item;

    /// Drives the transition: the word of the case and the text form of the item's identifier.
    std::pair<QString, QString> stableKey() const;
    bool operator==(const DetailRoute& other) const { return stableKey() == other.stableKey(); }
};

/// A collection's row in the sidebar, as a place to drop items on.
struct TabDropTarget {
    CollectionID collection;

    bool operator==(const TabDropTarget&) const = default;
};

} // namespace kestrova

template<>
struct std::hash<kestrova::CollectionFilter> {
    std::size_t operator()(const kestrova::CollectionFilter& filter) const noexcept {
        return std::hash<kestrova::CollectionID>{}(filter.collectionID()) * 4 +
               static_cast<std::size_t>(filter.kind());
    }
};
template<>
struct std::hash<kestrova::TabDropTarget> {
    std::size_t operator()(const kestrova::TabDropTarget& target) const noexcept {
        return std::hash<kestrova::CollectionID>{}(target.collection);
    }
};
