#include "Kestrova/shelf/SidebarRows.h"

#include "KestrovaCore/KovaCollection.h"

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

const std::array<CollectionFilter, fixedLensCount>& fixedLenses() {
    static const std::array lenses{CollectionFilter::all(), CollectionFilter::pinned(),
                                   CollectionFilter::screenshots()};
    return lenses;
}

} // namespace

std::size_t sidebarRowOf(const CollectionFilter& filter,
                         const std::vector<std::shared_ptr<KovaCollection>>& collections) {
    if (filter.kind() != CollectionFilter::Kind::collection)
        return static_cast<std::size_t>(std::ranges::find(fixedLenses(), filter) - fixedLenses().begin());
    const auto found = std::ranges::find(collections, filter.collectionID(), &KovaCollection::id);
    return found == collections.end()
               ? 0
               : fixedLensCount + static_cast<std::size_t>(found - collections.begin());
}

CollectionFilter filterOfSidebarRow(std::ptrdiff_t row,
                                    const std::vector<std::shared_ptr<KovaCollection>>& collections) {
    const auto last = std::ssize(fixedLenses()) + std::ssize(collections) - 1;
    const auto existing = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(row, 0, last));
    return existing < fixedLensCount
               ? fixedLenses()[existing]
               : CollectionFilter::collection(collections[existing - fixedLensCount]->id());
}

} // namespace kestrova
