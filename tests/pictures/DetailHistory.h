#pragma once

#include "Kestrova/services/LinkPreviewCache.h"
#include "KestrovaCore/ModelContainer.h"

#include <QStringList>

#include <map>

namespace kestrova {

/// Fills an empty store with items of each kind, ordinary and odd ones.
void fillWithDetails(ModelContainer& container);
/// What the rows are, in the order in which the lists show them.
QStringList detailNames();
/// What is known of the pages that links among them lead to.
std::map<QUrl, LinkPreviewCache::Preview> detailPreviews();

} // namespace kestrova
