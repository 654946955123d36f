#pragma once

#include "KestrovaCore/ModelContainer.h"

namespace kestrova {

// Each of them fills an empty store.

/// Rows of every kind, in Korean and English, and some collections.
void fillWithEveryKind(ModelContainer& container);
/// What is hard to show: texts and names without an end, other scripts and directions, odd pictures.
void fillWithExtremes(ModelContainer& container);
/// Thousands of rows, and more collections than the sidebar has room for.
void fillWithMany(ModelContainer& container);

} // namespace kestrova
