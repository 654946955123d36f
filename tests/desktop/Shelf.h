#pragma once

#include "tests/desktop/DesktopWindows.h"
#include "tests/desktop/KestrovaProgram.h"
#include "tests/desktop/KeyPresser.h"

#include <optional>
#include <vector>

namespace kestrova::test {

/// The shelf as a person sees and uses it: its window, and the keyboard when it has it.
class Shelf {
public:
    Shelf(const QByteArray& display, KestrovaProgram& program, KeyPresser& keys)
        : m_windows(display), m_display(display), m_program(program), m_keys(keys) {}

    /// The window while it is on the display.
    std::optional<xcb_window_t> window() const;
    bool isUp() const { return window().has_value(); }
    bool hasKeyboard() const;
    QRect frame() const;
    /// The menus that are open over it, lowest first.
    std::vector<xcb_window_t> menus() const;

    /// Opens it by the command and waits until it has the keyboard; false if it has not at the deadline.
    bool open();
    /// Waits until it is up and has the keyboard.
    bool waitForKeyboard() const;
    /// Waits until so many menus are open over it, without asking for the keyboard, which would take it from
    /// a menu that just wants it.
    bool waitForMenus(std::size_t count) const;
    /// Waits until it is off the display.
    bool waitUntilGone() const;

    /// Puts `text` into the search field instead of what is there. Only while it has the keyboard.
    void search(const QByteArray& text);
    /// What stands in the search field, by way of the clipboard. Only while it has the keyboard, and nothing
    /// else may take the clipboard meanwhile. Absent if nothing was copied at the deadline.
    std::optional<QByteArray> searchText();

private:
    DesktopWindows m_windows;
    QByteArray m_display;
    KestrovaProgram& m_program;
    KeyPresser& m_keys;
};

} // namespace kestrova::test
