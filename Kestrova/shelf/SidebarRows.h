#pragma once

#include "Kestrova/shelf/ShelfTypes.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace kestrova {

class KovaCollection;

// The order of the lenses in the sidebar: three fixed ones, then the collections.

/// The first row if the collection is not there any more.
std::size_t sidebarRowOf(const CollectionFilter& filter,
                         const std::vector<std::shared_ptr<KovaCollection>>& collections);
/// Of a row beyond either end, that of the row at this end.
CollectionFilter filterOfSidebarRow(std::ptrdiff_t row,
                                    const std::vector<std::shared_ptr<KovaCollection>>& collections);

} // namespace kestrova
