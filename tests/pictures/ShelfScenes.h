#pragma once

#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ModelContainer.h"

#include <functional>
#include <vector>

namespace kestrova {

/// A state of the shelf worth a picture.
struct ShelfScene {
    QString name;
    std::function<void(ShelfPanelView&)> enter;
};

/// Each of them is entered from a fresh view.
std::vector<ShelfScene> shelfScenes();

/// Fills a store with rows of every kind, in Korean and English, and some collections.
void fillWithEveryKind(ModelContainer& container);

} // namespace kestrova
