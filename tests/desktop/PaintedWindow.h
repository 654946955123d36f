#pragma once

#include "tests/desktop/XConnection.h"

#include <QColor>
#include <QRect>
#include <QRegion>
#include <QString>

#include <atomic>
#include <optional>
#include <thread>

namespace kestrova::test {

/// How a window of one colour is to be.
struct PaintedWindowSpec {
    /// In pixels of the display.
    QRect rect;
    /// One that lets through makes a window with transparency.
    QColor color;
    QString title = QStringLiteral("Painted");
    /// Without the window manager, which gives it neither a place nor a decoration.
    bool isUnmanaged = false;
    /// The name of what the desktop is to use it for; empty for none.
    QByteArray type = {};
    /// Absent for a mere rectangle; from its upper left corner.
    std::optional<QRegion> shape = {};
    /// The width of the shadow that it claims to draw within itself, on every side.
    std::uint32_t shadow = 0;
};

/// A client with one window that it paints itself whenever the server asks for it, on a thread of its own.
/// The server knows no background for it: what is not painted anew is lost. Closed by the destructor.
class PaintedWindow {
public:
    /// Waits until the window is on the screen and was painted. Throws std::runtime_error if it does not
    /// come there.
    PaintedWindow(const QByteArray& display, PaintedWindowSpec spec);
    PaintedWindow(const PaintedWindow&) = delete;
    PaintedWindow& operator=(const PaintedWindow&) = delete;
    ~PaintedWindow();

    xcb_window_t id() const { return m_window; }
    /// With the window manager's decoration; in pixels of the display.
    QRect frame() const;
    /// Without it.
    QRect inner() const;
    /// As a task bar does, without waiting.
    void raise();
    /// As the person does by the window manager's button; waits until it is gone from the screen.
    void minimise();
    /// Likewise.
    void moveToDesktop(std::uint32_t desktop);

private:
    void create();
    void setTexts();
    void setShape();
    void run();
    void paint(const xcb_expose_event_t& part);
    xcb_window_t frameWindow() const;
    bool isViewable() const;
    QRect rectOf(xcb_window_t window) const;
    void end();
    void tellRoot(const char* message, std::uint32_t value) const;

    PaintedWindowSpec m_spec;
    // The thread's own once it runs.
    XConnection m_painter;
    XConnection m_asker;
    xcb_window_t m_window = XCB_NONE;
    std::atomic<bool> m_isPainted = false;
    std::thread m_thread;
};

/// `color` as it is kept in a pixel of 32 bits.
std::uint32_t pixelOf(const QColor& color);

} // namespace kestrova::test
