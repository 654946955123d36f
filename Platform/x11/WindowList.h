#pragma once

#include <QMargins>
#include <QRect>

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace kestrova {

/// A window as the desktop shows it.
struct ListedWindow {
    /// The application's own.
    xcb_window_t window = XCB_NONE;
    /// The child of the root that shows it: the window manager's, or the window itself.
    xcb_window_t frame = XCB_NONE;
    /// With the decoration, without the shadow that it draws itself; in pixels of the desktop.
    QRect pixels;
    /// See ShareableWindow.
    int layer = 0;
    /// Of several windows in one frame only the one that is seen; not one of which nothing but a title is
    /// left.
    bool isOnScreen = false;

    bool operator==(const ListedWindow&) const = default;
};

/// A child of the root as the server has it.
struct RootChild {
    xcb_window_t window = XCB_NONE;
    /// With its border; in pixels of the desktop.
    QRect pixels;
    int borderWidth = 0;
    bool isViewable = false;
    bool isOverrideRedirect = false;
    /// Shows nothing, but takes clicks.
    bool isInputOnly = false;
    /// The server's own, on which a compositor paints all others.
    bool isOfServer = false;

    bool isSeen() const { return isViewable && !isInputOnly && !isOfServer; }
};

/// Asks the X server for the windows on it. On the thread that owns the connection, which outlives the
/// object.
class WindowList {
public:
    WindowList(xcb_connection_t* connection, const xcb_screen_t& screen);

    /// Everything that applications show or have minimised, and menus, panels and notes that are on the
    /// screen; lowest first, what is not on the screen included. Empty if the server has gone.
    std::vector<ListedWindow> windows() const;
    /// The children of the root, lowest first.
    std::vector<RootChild> rootChildren() const;
    /// The child of the root that shows the window; absent if it has gone.
    std::optional<xcb_window_t> frameOf(xcb_window_t window) const;
    /// The width of the shadow that the window draws within itself, on each side; 0 where it draws none.
    QMargins ownShadow(xcb_window_t window) const;

private:
    enum Name : std::size_t {
        clientListStacking,
        clientList,
        currentDesktop,
        windowDesktop,
        windowState,
        stateHidden,
        windowType,
        frameExtents,
        typeNormal,
        typeDialog,
        typeUtility,
        typeToolbar,
        typeSplash,
        typeDesktop,
        typeDock,
        typeNotification,
        typeMenu,
        typeDropdownMenu,
        typePopupMenu,
        typeTooltip,
        typeCombo,
        typeDnd,
        nameCount
    };
    struct Facts;

    std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t cookie) const;
    xcb_get_property_cookie_t ask(xcb_window_t window, Name property, xcb_atom_t type) const;
    std::map<xcb_window_t, Facts> factsOf(std::span<const xcb_window_t> windows) const;
    /// The frame of each window that is there.
    std::map<xcb_window_t, xcb_window_t> framesOf(std::span<const xcb_window_t> windows) const;
    /// 0 for those that say nothing that is known.
    int layerOf(std::span<const std::uint32_t> types) const;
    bool isShown(const Facts& facts, std::span<const std::uint32_t> desktop) const;

    xcb_connection_t* m_connection;
    const xcb_screen_t& m_screen;
    std::array<xcb_atom_t, nameCount> m_atoms{};
};

} // namespace kestrova
