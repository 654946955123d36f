#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <array>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

constexpr xcb_keycode_t keyV = 55;
constexpr std::uint16_t superAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

/// A window that draws one colour, another one after each key.
class Panel final : public QWidget {
public:
    Panel() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
        setGeometry(160, 120, 960, 540);
        setAttribute(Qt::WA_OpaquePaintEvent);
        create();
    }

protected:
    void keyPressEvent(QKeyEvent*) override { change(); }
    void wheelEvent(QWheelEvent*) override { change(); }
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), m_changed ? QColor(40, 40, 90) : QColor(90, 40, 40));
    }

private:
    void change() {
        m_changed = !m_changed;
        update();
    }

    bool m_changed = false;
};

/// Shows and hides the window on Super+Shift+V.
class Shortcut final : public QAbstractNativeEventFilter {
public:
    Shortcut(xcb_connection_t* connection, Panel& panel) : m_connection(connection), m_panel(panel) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        xcb_grab_key(connection, 0, root, superAndShift, keyV, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_flush(connection);
    }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto* const event = static_cast<xcb_key_press_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_KEY_PRESS || event->detail != keyV ||
            (event->state & superAndShift) != superAndShift)
            return false;
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
        m_panel.setVisible(!m_panel.isVisible());
        if (m_panel.isVisible())
            m_panel.activateWindow();
        return true;
    }

private:
    xcb_connection_t* m_connection;
    Panel& m_panel;
};

} // namespace

/// The floor for a panel of this toolkit: it comes on the shortcut, and draws another colour after each key.
/// Nothing of Kestrova is linked into it.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Panel panel;
    Shortcut shortcut(application.nativeInterface<QNativeInterface::QX11Application>()->connection(), panel);
    application.installNativeEventFilter(&shortcut);
    return QApplication::exec();
}
