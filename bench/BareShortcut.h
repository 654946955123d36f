#pragma once

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QWidget>

#include <cstdint>
#include <xcb/xcb.h>

namespace kestrova::bench {

/// Shows and hides a window of a bare program on Super+Shift+V. Both outlive it.
class BareShortcut final : public QAbstractNativeEventFilter {
public:
    BareShortcut(QApplication& application, QWidget& window)
        : m_connection(application.nativeInterface<QNativeInterface::QX11Application>()->connection()),
          m_window(window) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_grab_key(m_connection, 0, root, superAndShift, keyV, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_flush(m_connection);
        application.installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto* const event = static_cast<xcb_key_press_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_KEY_PRESS || event->detail != keyV ||
            (event->state & superAndShift) != superAndShift)
            return false;
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
        m_window.setVisible(!m_window.isVisible());
        if (m_window.isVisible())
            m_window.activateWindow();
        return true;
    }

private:
    static constexpr xcb_keycode_t keyV = 55;
    static constexpr std::uint16_t superAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

    xcb_connection_t* m_connection;
    QWidget& m_window;
};

} // namespace kestrova::bench
