#pragma once

#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/DesktopWindows.h"
#include "tests/desktop/KeyPresser.h"

#include <memory>
#include <ostream>

namespace kestrova::test {

/// A real program with an empty place for text that has the keyboard, ready to be pasted into.
class PasteDestination {
public:
    enum class Kind { Mousepad, QtEditor, Xterm, Lxterminal, XfceTerminal, Chromium };

    /// Starts the program and waits for it. Throws std::runtime_error if it is not there at the deadline.
    static std::unique_ptr<PasteDestination> start(DesktopSession& session, Kind kind);

    PasteDestination(const PasteDestination&) = delete;
    PasteDestination& operator=(const PasteDestination&) = delete;
    virtual ~PasteDestination() = default;

    Process& process() { return *m_process; }
    xcb_window_t window() const { return m_window; }
    bool hasKeyboard() const { return m_windows.hasKeyboard(m_window); }
    bool activate() { return m_windows.activate(m_window); }

    /// Whether any text has come yet. Moves no focus.
    virtual bool hasText() { return !text().isEmpty(); }
    /// What stands in it now. May move the focus to it.
    virtual QString text() = 0;

    bool waitForAnyText();
    bool waitForText(const QString& expected);

protected:
    explicit PasteDestination(const QByteArray& display) : m_windows(display) {}

    /// Waits for a window of the class, until it has the keyboard.
    void awaitWindow(const QString& windowClass);

    DesktopWindows m_windows;
    Process* m_process = nullptr;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

void PrintTo(PasteDestination::Kind kind, std::ostream* stream);

} // namespace kestrova::test
