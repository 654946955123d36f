#include "Kestrova/shelf/ShelfLists.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/FoldedText.h"
#include "KestrovaCore/ModelContext.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kestrova {
namespace {

using Items = ShelfLists::Items;

// The order of the chips. `rtf` has none: it counts as text.
constexpr std::array chipTypes{ClipboardItemType::text, ClipboardItemType::url, ClipboardItemType::image,
                               ClipboardItemType::file, ClipboardItemType::color};

constexpr ClipboardItemType chipOf(ClipboardItemType type) {
    return type == ClipboardItemType::rtf ? ClipboardItemType::text : type;
}

bool isSeenThrough(const CollectionFilter& lens, const ClipboardItem& item) {
    switch (lens.kind()) {
    case CollectionFilter::Kind::all:
        return true;
    case CollectionFilter::Kind::pinned:
        return item.pinned();
    case CollectionFilter::Kind::screenshots:
        return item.source() == ItemSource::screenshot;
    case CollectionFilter::Kind::collection:
        const auto& collections = item.values().collections;
        return collections && std::ranges::find(*collections, lens.collectionID()) != collections->end();
    }
    Q_UNREACHABLE();
}

template<typename Predicate>
Items those(const Items& items, Predicate isKept) {
    Items kept;
    std::ranges::copy_if(items, std::back_inserter(kept), [&](const auto& item) { return isKept(*item); });
    return kept;
}

/// Asks for the memory of the rows behind the `index`-th, each step one pointer closer to the text. Rows lie
/// scattered, and without this a search mostly waits for them, one after the other.
void prefetchBehind(const Items& items, std::size_t index) {
    // As measured with texts of some hundred characters.
    constexpr std::size_t step = 6;
    constexpr qsizetype mostBytes = 1024;
    constexpr qsizetype cacheLine = 64;
    if (index + 3 * step >= items.size())
        return;
    __builtin_prefetch(items[index + 3 * step].get());
    __builtin_prefetch(&items[index + 2 * step]->values());
    const auto& values = items[index + step]->values();
    const QByteArray& text = values.foldedContent.of(values.content);
    for (qsizetype at = 0; at < std::min(text.size(), mostBytes); at += cacheLine)
        __builtin_prefetch(text.constData() + at);
}

Items holding(const Items& items, const SearchTerm& term) {
    Items kept;
    for (std::size_t i = 0; i < items.size(); ++i) {
        prefetchBehind(items, i);
        if (matches(items[i]->values(), term))
            kept.push_back(items[i]);
    }
    return kept;
}

/// Whether every text that holds `longer` holds `shorter` too, by the rule of the search.
bool narrows(const QString& longer, const QString& shorter) {
    return SearchTerm(shorter).isIn(foldedForSearch(longer));
}

} // namespace

void ShelfLists::itemsChanged() {
    m_ofLens.reset();
    m_ofType.reset();
    m_found.reset();
    m_availableTypes.reset();
}

const Items& ShelfLists::lensItems(const CollectionFilter& lens) {
    if (lens == CollectionFilter::all())
        return m_items.results();
    if (!m_ofLens || m_ofLens->inputs != lens)
        m_ofLens = {lens, those(m_items.results(),
                                [&](const ClipboardItem& item) { return isSeenThrough(lens, item); })};
    return m_ofLens->items;
}

const Items& ShelfLists::typedItems(const Filters& filters) {
    const auto& items = lensItems(filters.lens);
    if (!filters.type)
        return items;
    const LensAndType inputs{filters.lens, *filters.type};
    if (!m_ofType || m_ofType->inputs != inputs)
        m_ofType = {inputs, those(items, [&](const ClipboardItem& item) {
                        return inputs.type == ClipboardItemType::text ? chipOf(item.type()) == inputs.type
                                                                      : item.type() == inputs.type;
                    })};
    return m_ofType->items;
}

const Items& ShelfLists::filteredItems(const Filters& filters) {
    if (filters.query.isEmpty())
        return typedItems(filters);
    if (!m_found || m_found->inputs != filters)
        search(filters);
    return m_found->items;
}

void ShelfLists::search(const Filters& filters) {
    const bool isNarrower = m_found && m_found->inputs.lens == filters.lens &&
                            m_found->inputs.type == filters.type &&
                            narrows(filters.query, m_found->inputs.query);
    const auto& items = isNarrower ? m_found->items : typedItems(filters);
    m_found = {filters, holding(items, SearchTerm(filters.query))};
}

const std::vector<ClipboardItemType>& ShelfLists::availableTypes(const CollectionFilter& lens) {
    if (m_availableTypes && m_availableTypes->first == lens)
        return m_availableTypes->second;
    std::array<bool, allClipboardItemTypes.size()> seen{};
    std::size_t missing = chipTypes.size();
    for (const auto& item : lensItems(lens)) {
        auto& isSeen = seen.at(static_cast<std::size_t>(chipOf(item->type())));
        if (std::exchange(isSeen, true))
            continue;
        if (--missing == 0)
            break;
    }
    std::vector<ClipboardItemType> available;
    std::ranges::copy_if(chipTypes, std::back_inserter(available),
                         [&](auto type) { return seen.at(static_cast<std::size_t>(type)); });
    m_availableTypes = {lens, std::move(available)};
    return m_availableTypes->second;
}

std::optional<std::size_t> ShelfLists::indexOf(ItemID id, const Filters& filters) {
    const auto item = m_context.item(id);
    if (!item)
        return std::nullopt;
    // Every list has the order of the history.
    const auto& items = filteredItems(filters);
    const auto place = std::ranges::lower_bound(
        items, item, [](const auto& a, const auto& b) { return standsBefore(*a, *b); });
    if (place == items.end() || *place != item)
        return std::nullopt;
    return static_cast<std::size_t>(place - items.begin());
}

} // namespace kestrova
