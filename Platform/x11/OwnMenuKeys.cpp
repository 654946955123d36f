#include "Platform/x11/OwnMenuKeys.h"

#include "Platform/x11/KeyModifiers.h"
#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/X11Keymap.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

#include <utility>

namespace kestrova {

OwnMenuKeys::OwnMenuKeys(X11Keymap& keymap, Handler handler)
    : m_keymap(keymap), m_handler(std::move(handler)) {}

void OwnMenuKeys::setEnabled(bool enabled) {
    if (m_isEnabled == enabled)
        return;
    m_isEnabled = enabled;
    if (enabled)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
}

bool OwnMenuKeys::eventFilter(QObject* receiver, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // The window gets the key first and passes it on to the widget.
    return isKey && receiver->isWindowType() && qobject_cast<QMenu*>(QApplication::activePopupWidget()) &&
           isTaken(static_cast<const QKeyEvent&>(*event));
}

bool OwnMenuKeys::isTaken(const QKeyEvent& key) {
    const auto virtualKey = virtualKeyOfX11Key(key.nativeScanCode());
    const auto& modifiers = m_keymap.modifiers();
    if (!virtualKey || key.isAutoRepeat() || modifiers.maskOfKey[key.nativeScanCode()] != 0)
        return false;
    const auto state = static_cast<std::uint16_t>(key.nativeModifiers());
    return m_handler(key.type() == QEvent::KeyPress ? Change::Down : Change::Up, *virtualKey,
                     globalEventFlags(state, *virtualKey, modifiers));
}

} // namespace kestrova
