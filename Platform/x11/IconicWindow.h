#pragma once

#include "Platform/TaskListPresence.h"

#include <QAbstractNativeEventFilter>
#include <QIcon>

#include <xcb/xcb.h>

#include <functional>

namespace kestrova {

/// A minimised window that stands for the program. When it is brought up, as task lists and switchers do, it
/// tells so and is minimised again. It never takes the keyboard, so that the application that was in front
/// still is; and it stays when the window manager is asked to close it.
class IconicWindow final : public TaskListPresence, private QAbstractNativeEventFilter {
public:
    /// The toolkit runs on X11. `icon` is asked for the program's icon if the place is taken.
    explicit IconicWindow(std::function<QIcon()> icon) : m_icon(std::move(icon)) {}
    IconicWindow(const IconicWindow&) = delete;
    IconicWindow& operator=(const IconicWindow&) = delete;
    ~IconicWindow() override;

    void appear() override;

private:
    enum class State { unmanaged, iconic, normal };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void makeWindow();
    void describe();
    void setIcon();
    void stateChanged();
    State state() const;
    void minimise();

    const std::function<QIcon()> m_icon;
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_stateAtom = XCB_ATOM_NONE;
    xcb_atom_t m_changeStateAtom = XCB_ATOM_NONE;
    State m_state = State::unmanaged;
};

} // namespace kestrova
