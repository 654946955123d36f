#include "tests/pictures/DetailScenes.h"

#include "KestrovaCore/ClipboardItem.h"
#include "tests/pictures/DetailHistory.h"

#include <algorithm>

namespace kestrova {

std::vector<ShelfScene> detailScenes() {
    std::vector<ShelfScene> scenes;
    std::size_t row = 0;
    for (const auto& name : detailNames()) {
        scenes.push_back({.name = QStringLiteral("pane-") + name,
                          .enter =
                              [row](ShelfPanelView& view) {
                                  view.perform([&] {
                                      view._selection = view.filteredItems().at(row)->id();
                                      view._lane = KeyboardLane::list;
                                      view._searchFocused = false;
                                  });
                              },
                          .history = ShelfScene::History::details});
        ++row;
    }
    for (const auto& name : {u"pane-link"_qs, u"pane-file-long"_qs}) {
        auto large = *std::ranges::find(scenes, name, &ShelfScene::name);
        large.name += QStringLiteral("-font-2");
        large.fontScale = 2;
        scenes.push_back(large);
    }
    return scenes;
}

} // namespace kestrova
