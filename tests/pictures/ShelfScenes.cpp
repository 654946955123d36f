#include "tests/pictures/ShelfScenes.h"

#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/widgets/ItemView.h"
#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/pictures/CardScenes.h"
#include "tests/pictures/DetailScenes.h"
#include "tests/pictures/ScreenScenes.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <iterator>

namespace kestrova {
namespace {

using Type = ClipboardItemType;
using History = ShelfScene::History;
using Scenes = std::vector<ShelfScene>;

std::shared_ptr<ClipboardItem> find(const ShelfPanelView& view, Type type) {
    const auto& items = view.items();
    const auto found = std::ranges::find(items, type, &ClipboardItem::type);
    return found == items.end() ? nullptr : *found;
}

void select(ShelfPanelView& view, Type type) {
    view.perform([&] {
        view._selection = find(view, type)->id();
        view._lane = KeyboardLane::list;
        view._searchFocused = false;
    });
}

void useGrid(ShelfPanelView& view) {
    view.perform([&] { view._viewMode = ShelfViewMode::grid; });
}

void hideSidebar(ShelfPanelView& view) {
    view.perform([&] { view._sidebarVisible = false; });
}

void hidePreview(ShelfPanelView& view) {
    view.perform([&] { view._previewVisible = false; });
}

void search(ShelfPanelView& view, const QString& query) {
    view.perform([&] { view._query = query; });
}

template<typename Widget>
std::vector<Widget*> visibleParts(const QWidget& window) {
    std::vector<Widget*> found;
    for (auto* const child : window.findChildren<QWidget*>())
        if (auto* const part = dynamic_cast<Widget*>(child); part && part->isVisible())
            found.push_back(part);
    return found;
}

void rightClick(QWidget& widget, QPoint place) {
    QContextMenuEvent request(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
    QCoreApplication::sendEvent(&widget, &request);
}

void rightClickItem(ShelfPanelWidget& panel, int row) {
    const auto& items = *visibleParts<ItemView>(panel).at(0);
    rightClick(*items.viewport(), items.visualRect(items.model()->index(row, 0)).center());
}

void press(QWidget& widget, Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// Highlights a line of the open menu, and opens its submenu if it has one.
void highlight(int line) {
    auto* const menu = dynamic_cast<PanelMenu*>(QApplication::activePopupWidget());
    if (!menu)
        qFatal("No menu is open.");
    menu->setActiveAction(menu->actions().at(line));
    if (menu->actions().at(line)->menu())
        press(*menu, Qt::Key_Right);
}

Scenes paneScenes() {
    return {
        {.name = u"list"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::text); }},
        {.name = u"list-without-sidebar"_qs, .enter = hideSidebar},
        {.name = u"list-without-preview"_qs, .enter = hidePreview},
        {.name = u"list-alone"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 hideSidebar(view);
                 hidePreview(view);
             }},
        {.name = u"grid"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 select(view, Type::rtf);
                 useGrid(view);
             }},
        {.name = u"grid-without-sidebar"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 hideSidebar(view);
                 useGrid(view);
             }},
        {.name = u"grid-without-preview"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 select(view, Type::image);
                 useGrid(view);
                 hidePreview(view);
             }},
        {.name = u"grid-alone"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 useGrid(view);
                 hideSidebar(view);
                 hidePreview(view);
                 view.perform([&] { view._hoveredItem = view.filteredItems().back()->id(); });
             }},
    };
}

Scenes lensScenes() {
    const auto lens = [](std::ptrdiff_t row) {
        return [row](ShelfPanelView& view) { view.perform([&] { view.selectSidebarRow(row); }); };
    };
    return {
        {.name = u"lens-pinned"_qs, .enter = lens(1)},
        {.name = u"lens-screenshots"_qs, .enter = lens(2)},
        {.name = u"lens-collection"_qs,
         .enter =
             [lens](ShelfPanelView& view) {
                 lens(3)(view);
                 view.perform([&] {
                     view._lane = KeyboardLane::sidebar;
                     view._hoveredItem = view.filteredItems().back()->id();
                 });
             }},
        {.name = u"lens-empty-collection"_qs, .enter = lens(5)},
    };
}

Scenes listScenes() {
    return {
        {.name = u"search"_qs,
         .enter = [](ShelfPanelView& view) { view.perform([&] { view._searchFocused = true; }); }},
        {.name = u"found"_qs, .enter = [](ShelfPanelView& view) { search(view, u"한글"_qs); }},
        {.name = u"nothing-found"_qs, .enter = [](ShelfPanelView& view) { search(view, u"없는 말"_qs); }},
        {.name = u"grid-nothing-found"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 useGrid(view);
                 search(view, u"없는 말"_qs);
             }},
        {.name = u"picture"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::image); }},
        {.name = u"colour"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::color); }},
        {.name = u"link"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::url); }},
        {.name = u"file"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::file); }},
        {.name = u"tags-lane"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 view.perform([&] {
                     view._lane = KeyboardLane::tags;
                     view._searchFocused = false;
                     view._typeFilter = Type::url;
                 });
                 view.perform([&] { view._activeTagIndex = 2; });
             }},
        {.name = u"grid-colours"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 useGrid(view);
                 hidePreview(view);
                 view.perform([&] { view._typeFilter = Type::color; });
                 view.perform([&] { view._hoveredItem = view.filteredItems().back()->id(); });
             }},
        {.name = u"empty"_qs, .history = History::empty},
        {.name = u"grid-empty"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 useGrid(view);
                 hidePreview(view);
             },
         .history = History::empty},
    };
}

Scenes keyScenes() {
    struct Held {
        bool option = false;
        bool command = false;
        bool control = false;
    };
    const auto held = [](Held keys) {
        return [keys](ShelfPanelView& view) {
            select(view, Type::url);
            view.perform([&] {
                view._optionHeld = keys.option;
                view._commandHeld = keys.command;
                view._controlHeld = keys.control;
            });
        };
    };
    return {
        {.name = u"keys-option"_qs, .enter = held({.option = true})},
        {.name = u"keys-option-command"_qs, .enter = held({.option = true, .command = true})},
        {.name = u"keys-control"_qs, .enter = held({.control = true})},
        {.name = u"keys-command"_qs, .enter = held({.command = true})},
    };
}

Scenes extremeScenes() {
    Scenes scenes{
        {.name = u"extremes"_qs},
        {.name = u"extremes-arabic"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 view.perform([&] { view._selection = view.filteredItems().at(4)->id(); });
             }},
        {.name = u"extremes-link"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::url); }},
        {.name = u"extremes-file"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::file); }},
        {.name = u"extremes-picture"_qs, .enter = [](ShelfPanelView& view) { select(view, Type::image); }},
        {.name = u"extremes-query"_qs,
         .enter =
             [](ShelfPanelView& view) { search(view, QStringLiteral("끝없이 긴 검색어 ").repeated(20)); }},
        {.name = u"extremes-grid"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 useGrid(view);
                 hidePreview(view);
             }},
    };
    for (auto& scene : scenes)
        scene.history = History::extremes;
    const auto middle = [](ShelfPanelView& view) {
        view.perform([&] {
            const auto& items = view.filteredItems();
            view._selection = view._scrollTarget = items.at(items.size() / 2)->id();
            view.itemTapped();
        });
    };
    scenes.push_back({.name = u"many"_qs, .enter = middle, .history = History::many});
    scenes.push_back({.name = u"many-grid"_qs,
                      .enter =
                          [middle](ShelfPanelView& view) {
                              useGrid(view);
                              hidePreview(view);
                              middle(view);
                          },
                      .history = History::many});
    return scenes;
}

Scenes menuScenes() {
    return {
        {.name = u"menu"_qs, .act = [](ShelfPanelWidget& panel) { rightClickItem(panel, 3); }},
        {.name = u"menu-submenu"_qs,
         .act =
             [](ShelfPanelWidget& panel) {
                 rightClickItem(panel, 2);
                 highlight(4);
             }},
        {.name = u"menu-file-in-collection"_qs,
         .enter = [](ShelfPanelView& view) { view.perform([&] { view.selectSidebarRow(3); }); },
         .act =
             [](ShelfPanelWidget& panel) {
                 rightClickItem(panel, 1);
                 highlight(10);
             }},
        {.name = u"menu-extremes"_qs,
         .history = History::extremes,
         .act =
             [](ShelfPanelWidget& panel) {
                 rightClickItem(panel, 0);
                 highlight(4);
             }},
        {.name = u"menu-collection"_qs,
         .act =
             [](ShelfPanelWidget& panel) {
                 rightClick(*visibleParts<SidebarRow>(panel).at(3), {60, 16});
                 highlight(2);
             }},
        {.name = u"menu-share"_qs,
         .act =
             [](ShelfPanelWidget& panel) {
                 const auto icon = [](const char* name) {
                     return QIcon(Symbol(QString::fromLatin1(name)).pixmap(16, 2, QColor(10, 132, 255)));
                 };
                 panel.pickShareTarget(
                     {{.identifier = {}, .name = u"텍스트 편집기"_qs, .icon = icon("doc.text")},
                      {.identifier = {}, .name = u"Mail"_qs, .icon = icon("link")},
                      {.identifier = {}, .name = u"Without an icon"_qs, .icon = {}}},
                     [](const ShareTarget&) {});
             }},
        {.name = u"menu-share-nowhere"_qs,
         .act = [](ShelfPanelWidget& panel) { panel.pickShareTarget({}, [](const ShareTarget&) {}); }},
    };
}

void editCollection(ShelfPanelView& view) {
    const auto collection = view.allCollections().front();
    view.perform([&] { view.presentCollectionSheet(CollectionEditSheet::Mode::edit(collection)); });
}

Scenes sheetScenes() {
    return {
        {.name = u"edit"_qs,
         .enter = [](ShelfPanelView& view) { view.perform([&] { view.edit(find(view, Type::text)); }); }},
        {.name = u"preview"_qs,
         .enter = [](ShelfPanelView& view) { view.perform([&] { view.preview(find(view, Type::image)); }); }},
        {.name = u"new-collection"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 view.perform([&] { view.presentCollectionSheet(CollectionEditSheet::Mode::create()); });
             }},
        {.name = u"edit-collection"_qs,
         .enter =
             [](ShelfPanelView& view) {
                 editCollection(view);
                 view.perform([&] {
                     view.collectionSheet()->_selectedColorHex = CollectionEditSheet::swatches()[7].hex;
                 });
             }},
        {.name = u"edit-extreme-collection"_qs, .enter = editCollection, .history = History::extremes},
    };
}

/// Some of the others, on desktops with larger text.
Scenes fontScenes(const Scenes& others) {
    constexpr std::array scales{1.5, 2.0};
    const QStringList names{u"list"_qs,
                            u"grid"_qs,
                            u"grid-without-preview"_qs,
                            u"keys-option"_qs,
                            u"keys-option-command"_qs,
                            u"keys-control"_qs,
                            u"keys-command"_qs,
                            u"colour"_qs,
                            u"menu-file-in-collection"_qs,
                            u"empty"_qs,
                            u"grid-nothing-found"_qs,
                            u"new-collection"_qs,
                            u"actions"_qs,
                            u"actions-every-row"_qs,
                            u"actions-collections"_qs,
                            u"edit-text"_qs,
                            u"preview-colour"_qs,
                            u"preview-text"_qs};
    Scenes scenes;
    for (const auto& scene : others)
        if (names.contains(scene.name))
            for (const double scale : scales) {
                scenes.push_back(scene);
                scenes.back().name += QStringLiteral("-font-%1").arg(scale);
                scenes.back().fontScale = scale;
            }
    return scenes;
}

} // namespace

Scenes shelfScenes() {
    Scenes all;
    for (const auto make : {paneScenes, lensScenes, listScenes, keyScenes, extremeScenes, menuScenes,
                            sheetScenes, cardScenes, detailScenes, screenScenes})
        std::ranges::move(make(), std::back_inserter(all));
    std::ranges::move(fontScenes(all), std::back_inserter(all));
    return all;
}

} // namespace kestrova
