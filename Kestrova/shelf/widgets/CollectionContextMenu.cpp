#include "Kestrova/shelf/widgets/CollectionContextMenu.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "KestrovaCore/KovaCollection.h"

namespace kestrova {

PanelMenu& openCollectionMenu(ShelfPanelView& view, const std::shared_ptr<KovaCollection>& collection,
                              QPoint globalPosition, const ShelfTheme& theme, Ground ground,
                              QWidget& window) {
    const auto doing = [&view, collection](auto act) {
        return [&view, collection, act] {
            view.perform([&] {
                // It may have gone while the menu was open.
                if (!collection->isDeleted())
                    act(view, collection);
            });
        };
    };
    auto& menu = *new PanelMenu(theme, ground, &window);
    menu.add({.title = QStringLiteral("편집…"), .action = doing([](auto& state, const auto& edited) {
                                                    state.presentCollectionSheet(
                                                        CollectionEditSheet::Mode::edit(edited));
                                                })});
    menu.addDivider();
    menu.add({.title = QStringLiteral("삭제"),
              .isDestructive = true,
              .action = doing([](auto& state, const auto& deleted) { state.deleteCollection(deleted); })});
    menu.popUp(globalPosition);
    return menu;
}

} // namespace kestrova
