#pragma once

#include "tests/desktop/XConnection.h"

#include <QColor>
#include <QRect>
#include <QString>

#include <vector>

namespace kestrova::test {

/// What a person sees of the windows on a display, and which of them has the keyboard.
class DesktopWindows {
public:
    explicit DesktopWindows(const QByteArray& display) : m_x(display) {}

    /// The window that the window manager calls active; none without a window manager.
    xcb_window_t active() const;
    /// The visible windows, menus included, that say that they belong to the process; lowest first.
    std::vector<xcb_window_t> ofProcess(qint64 pid) const;
    /// The windows of the process that the window manager lists, minimised ones included; oldest first.
    std::vector<xcb_window_t> managed(qint64 pid) const;
    /// The names of the states that the window manager says the window is in.
    std::vector<QByteArray> states(xcb_window_t window) const;
    /// The visible windows of this title; lowest first.
    std::vector<xcb_window_t> titled(const QString& title) const;
    QString title(xcb_window_t window) const;
    /// The machine on which its process says that it runs.
    QString machine(xcb_window_t window) const;
    /// Of the first picture of its icon; empty if it has none.
    QSize iconSize(xcb_window_t window) const;
    /// The two names of its class, with a blank between them.
    QString windowClass(xcb_window_t window) const;
    /// In pixels of the display; empty if the window has gone.
    QRect frame(xcb_window_t window) const;
    /// What a person sees at this pixel of the display; invalid if it lies outside.
    QColor colorAt(QPoint pixel) const;
    /// Whether keys go to the window or one within it, as long as nobody holds the keyboard.
    bool hasKeyboard(xcb_window_t window) const;
    /// Whether a client holds the keyboard, as an open menu does.
    bool isKeyboardHeld() const;

    /// Asks the window manager, as a task bar does, without waiting.
    void requestActivation(xcb_window_t window);
    /// Asks likewise and waits until the window has the keyboard; false if it has not at the deadline.
    bool activate(xcb_window_t window);
    /// Asks the window manager to have the window closed, as a task bar does, without waiting.
    void requestClosing(xcb_window_t window);
    /// From now on the window manager does not give the window the keyboard, whoever asks.
    void refuseKeyboard(xcb_window_t window);

private:
    template<typename Test>
    std::vector<xcb_window_t> visibleWindows(const Test& test) const;
    template<typename Test>
    void collectVisible(xcb_window_t parent, const Test& test, std::vector<xcb_window_t>& found) const;
    QByteArray property(xcb_window_t window, const char* name) const;

    XConnection m_x;
};

} // namespace kestrova::test
