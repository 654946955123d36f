#include "tests/pictures/ScreenScenes.h"

#include "KestrovaCore/ClipboardItem.h"
#include "tests/pictures/DetailHistory.h"

namespace kestrova {
namespace {

/// The route that a row of the details history is looked at by.
ShelfScene sceneOf(const QString& prefix, const QString& name, std::size_t row, DetailRoute::Kind kind) {
    return {.name = prefix + name,
            .enter =
                [row, kind](ShelfPanelView& view) {
                    view.perform([&] {
                        const auto item = view.filteredItems().at(row);
                        view._route = DetailRoute{kind, item};
                    });
                },
            .history = ShelfScene::History::details};
}

} // namespace

std::vector<ShelfScene> screenScenes() {
    std::vector<ShelfScene> scenes;
    std::size_t row = 0;
    for (const auto& name : detailNames()) {
        scenes.push_back(sceneOf(u"preview-"_qs, name, row, DetailRoute::Kind::preview));
        if (!name.startsWith(u"image") && !name.startsWith(u"file"))
            scenes.push_back(sceneOf(u"edit-"_qs, name, row, DetailRoute::Kind::edit));
        ++row;
    }
    return scenes;
}

} // namespace kestrova
