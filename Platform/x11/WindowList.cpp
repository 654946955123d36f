#include "Platform/x11/WindowList.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/RootRect.h"
#include "Platform/x11/WindowLayer.h"
#include "Platform/x11/XcbReply.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrova {

namespace {

// Nothing is shown in so little; toolkits keep such windows for their own purposes.
constexpr QSize leastShown{2, 2};
// A window within windows within windows beyond sense: a loop of a window manager that moves it about.
constexpr int deepest = 16;

QMargins marginsOf(std::span<const std::uint32_t> extents) {
    if (extents.size() < 4)
        return {};
    const auto side = [&](std::size_t index) { return static_cast<int>(extents[index]); };
    return {side(0), side(2), side(1), side(3)};
}

/// What is left of a window without the shadow that it draws; all of it where the numbers make no sense.
QRect withoutShadow(const QRect& pixels, const QMargins& shadow) {
    const auto rest = pixels.marginsRemoved(shadow);
    return rest.isEmpty() || !pixels.contains(rest) ? pixels : rest;
}

} // namespace

struct WindowList::Facts {
    std::vector<std::uint32_t> types;
    std::vector<std::uint32_t> states;
    std::vector<std::uint32_t> desktop;
    QMargins shadow;
    bool isViewable = false;
};

WindowList::WindowList(xcb_connection_t* connection, const xcb_screen_t& screen)
    : m_connection(connection), m_screen(screen) {
    constexpr std::array<const char*, nameCount> names{"_NET_CLIENT_LIST_STACKING",
                                                       "_NET_CLIENT_LIST",
                                                       "_NET_CURRENT_DESKTOP",
                                                       "_NET_WM_DESKTOP",
                                                       "_NET_WM_STATE",
                                                       "_NET_WM_STATE_HIDDEN",
                                                       "_NET_WM_WINDOW_TYPE",
                                                       "_GTK_FRAME_EXTENTS",
                                                       "_NET_WM_WINDOW_TYPE_NORMAL",
                                                       "_NET_WM_WINDOW_TYPE_DIALOG",
                                                       "_NET_WM_WINDOW_TYPE_UTILITY",
                                                       "_NET_WM_WINDOW_TYPE_TOOLBAR",
                                                       "_NET_WM_WINDOW_TYPE_SPLASH",
                                                       "_NET_WM_WINDOW_TYPE_DESKTOP",
                                                       "_NET_WM_WINDOW_TYPE_DOCK",
                                                       "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                                                       "_NET_WM_WINDOW_TYPE_MENU",
                                                       "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                                       "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                                                       "_NET_WM_WINDOW_TYPE_TOOLTIP",
                                                       "_NET_WM_WINDOW_TYPE_COMBO",
                                                       "_NET_WM_WINDOW_TYPE_DND"};
    std::array<xcb_intern_atom_cookie_t, nameCount> asked;
    std::ranges::transform(names, asked.begin(),
                           [connection](const char* name) { return askForAtom(connection, name); });
    std::ranges::transform(asked, m_atoms.begin(),
                           [connection](auto cookie) { return atomOf(connection, cookie); });
}

xcb_get_property_cookie_t WindowList::ask(xcb_window_t window, Name property, xcb_atom_t type) const {
    constexpr std::uint32_t most = 65536;
    return xcb_get_property(m_connection, 0, window, m_atoms[property], type, 0, most);
}

std::vector<std::uint32_t> WindowList::numbers(xcb_get_property_cookie_t cookie) const {
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    std::vector<std::uint32_t> numbers(reply->value_len);
    if (!numbers.empty())
        std::memcpy(numbers.data(), xcb_get_property_value(reply.get()), numbers.size() * sizeof numbers[0]);
    return numbers;
}

std::vector<RootChild> WindowList::rootChildren() const {
    const XcbReply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_screen.root), nullptr)};
    if (!tree)
        return {};
    const std::span windows{xcb_query_tree_children(tree.get()),
                            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()))};
    std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> asked;
    for (const auto window : windows)
        asked.emplace_back(xcb_get_window_attributes(m_connection, window),
                           xcb_get_geometry(m_connection, window));
    // Numbers of the server's own begin with no client's.
    const auto isOfServer = [mask = xcb_get_setup(m_connection)->resource_id_mask](xcb_window_t window) {
        constexpr std::uint32_t clientBits = 0x1FFFFFFF;
        return (window & clientBits & ~mask) == 0;
    };
    std::vector<RootChild> children;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const XcbReply<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(m_connection, asked[i].first, nullptr)};
        const XcbReply<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(m_connection, asked[i].second, nullptr)};
        if (!attributes || !geometry)
            continue;
        const int borders = 2 * geometry->border_width;
        children.push_back(
            {.window = windows[i],
             .pixels = {geometry->x, geometry->y, geometry->width + borders, geometry->height + borders},
             .borderWidth = geometry->border_width,
             .isViewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE,
             .isOverrideRedirect = attributes->override_redirect != 0,
             .isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY,
             .isOfServer = isOfServer(windows[i])});
    }
    return children;
}

std::map<xcb_window_t, xcb_window_t> WindowList::framesOf(std::span<const xcb_window_t> windows) const {
    std::map<xcb_window_t, xcb_window_t> frames;
    // Pairs of a window and what of its ancestors was reached.
    std::vector<std::pair<xcb_window_t, xcb_window_t>> climbing;
    for (const auto window : windows)
        climbing.emplace_back(window, window);
    for (int depth = 0; depth < deepest && !climbing.empty(); ++depth) {
        std::vector<xcb_query_tree_cookie_t> asked;
        for (const auto& [window, reached] : climbing)
            asked.push_back(xcb_query_tree(m_connection, reached));
        std::vector<std::pair<xcb_window_t, xcb_window_t>> higher;
        for (std::size_t i = 0; i < climbing.size(); ++i) {
            const auto& [window, reached] = climbing[i];
            const XcbReply<xcb_query_tree_reply_t> tree{
                xcb_query_tree_reply(m_connection, asked[i], nullptr)};
            if (!tree || tree->parent == XCB_NONE)
                continue;
            if (tree->parent == m_screen.root)
                frames.emplace(window, reached);
            else
                higher.emplace_back(window, tree->parent);
        }
        climbing = std::move(higher);
    }
    return frames;
}

std::optional<xcb_window_t> WindowList::frameOf(xcb_window_t window) const {
    const auto frames = framesOf(std::span(&window, 1));
    return frames.empty() ? std::nullopt : std::optional(frames.begin()->second);
}

QMargins WindowList::ownShadow(xcb_window_t window) const {
    return marginsOf(numbers(ask(window, frameExtents, XCB_ATOM_CARDINAL)));
}

std::map<xcb_window_t, WindowList::Facts> WindowList::factsOf(std::span<const xcb_window_t> windows) const {
    struct Asked {
        xcb_get_property_cookie_t types;
        xcb_get_property_cookie_t states;
        xcb_get_property_cookie_t desktop;
        xcb_get_property_cookie_t shadow;
        xcb_get_window_attributes_cookie_t attributes;
    };
    std::vector<Asked> asked;
    for (const auto window : windows)
        asked.push_back({ask(window, windowType, XCB_ATOM_ATOM), ask(window, windowState, XCB_ATOM_ATOM),
                         ask(window, windowDesktop, XCB_ATOM_CARDINAL),
                         ask(window, frameExtents, XCB_ATOM_CARDINAL),
                         xcb_get_window_attributes(m_connection, window)});
    std::map<xcb_window_t, Facts> facts;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        Facts known{.types = numbers(asked[i].types),
                    .states = numbers(asked[i].states),
                    .desktop = numbers(asked[i].desktop),
                    .shadow = marginsOf(numbers(asked[i].shadow))};
        const XcbReply<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(m_connection, asked[i].attributes, nullptr)};
        known.isViewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        facts.emplace(windows[i], std::move(known));
    }
    return facts;
}

int WindowList::layerOf(std::span<const std::uint32_t> types) const {
    // An application names what fits best first; names that only one desktop knows are passed over.
    for (const auto type : types) {
        for (const auto& [name, kind] : {std::pair{typeNormal, WindowKind::ordinary},
                                         {typeDialog, WindowKind::ordinary},
                                         {typeUtility, WindowKind::ordinary},
                                         {typeToolbar, WindowKind::ordinary},
                                         {typeSplash, WindowKind::ordinary},
                                         {typeDesktop, WindowKind::desktop},
                                         {typeDock, WindowKind::panel},
                                         {typeNotification, WindowKind::notification},
                                         {typeMenu, WindowKind::menu},
                                         {typeDropdownMenu, WindowKind::menu},
                                         {typePopupMenu, WindowKind::menu},
                                         {typeTooltip, WindowKind::menu},
                                         {typeCombo, WindowKind::menu},
                                         {typeDnd, WindowKind::menu}}) {
            if (type == m_atoms[name])
                return windowLayer(kind);
        }
    }
    return windowLayer(WindowKind::ordinary);
}

bool WindowList::isShown(const Facts& facts, std::span<const std::uint32_t> desktop) const {
    constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
    // Window managers that draw previews leave windows mapped that nobody sees.
    if (std::ranges::find(facts.states, m_atoms[stateHidden]) != facts.states.end())
        return false;
    return facts.desktop.empty() || desktop.empty() || facts.desktop.front() == everyDesktop ||
           facts.desktop.front() == desktop.front();
}

std::vector<ListedWindow> WindowList::windows() const {
    const auto askedStacking = ask(m_screen.root, clientListStacking, XCB_ATOM_WINDOW);
    const auto askedClients = ask(m_screen.root, clientList, XCB_ATOM_WINDOW);
    const auto askedDesktop = ask(m_screen.root, currentDesktop, XCB_ATOM_CARDINAL);
    auto managed = numbers(askedStacking);
    const auto clients = numbers(askedClients);
    if (managed.empty())
        managed = clients;
    const auto desktop = numbers(askedDesktop);

    const auto children = rootChildren();
    const auto frames = framesOf(managed);
    std::multimap<xcb_window_t, xcb_window_t> shownBy;
    for (const auto& [window, frame] : frames)
        shownBy.emplace(frame, window);
    std::vector<xcb_window_t> asked;
    for (const auto& child : children) {
        if (!shownBy.contains(child.window))
            shownBy.emplace(child.window, child.window);
        const auto [first, last] = shownBy.equal_range(child.window);
        for (auto shown = first; shown != last; ++shown)
            asked.push_back(shown->second);
    }
    const auto facts = factsOf(asked);

    const auto screen = rootRect(m_connection, m_screen.root);
    std::vector<ListedWindow> listed;
    for (const auto& child : children) {
        const auto [first, last] = shownBy.equal_range(child.window);
        for (auto shown = first; shown != last; ++shown) {
            const auto window = shown->second;
            const bool isManaged = frames.contains(window);
            const auto& known = facts.at(window);
            if (!isManaged && (!child.isSeen() || !child.pixels.intersects(screen) ||
                               child.pixels.size().boundedTo(leastShown) != leastShown))
                continue;
            auto layer = layerOf(known.types);
            // No window manager handles it: a menu or a note of an application that does not say so.
            if (!isManaged && child.isOverrideRedirect && layer == windowLayer(WindowKind::ordinary))
                layer = windowLayer(WindowKind::menu);
            listed.push_back({.window = window,
                              .frame = child.window,
                              .pixels = withoutShadow(child.pixels, known.shadow),
                              .layer = layer,
                              .isOnScreen = child.isViewable && known.isViewable && isShown(known, desktop)});
        }
    }
    return listed;
}

} // namespace kestrova
