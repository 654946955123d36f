#pragma once

#include <QObject>

#include <cstdint>
#include <functional>

class QKeyEvent;

namespace kestrova {

class X11Keymap;

/// Shows the keys that go to an open menu of this program before the menu sees them. Main thread only.
class OwnMenuKeys final : public QObject {
public:
    enum class Change { Down, Up };
    /// Gets the virtual key code and the modifiers in the sense of global shortcuts; answers whether the menu
    /// does not get the key.
    using Handler = std::function<bool(Change, std::uint32_t keyCode, std::uint32_t modifierFlags)>;

    /// `keymap` outlives the object.
    OwnMenuKeys(X11Keymap& keymap, Handler handler);

    void setEnabled(bool enabled);
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    bool isTaken(const QKeyEvent& key);

    X11Keymap& m_keymap;
    const Handler m_handler;
    bool m_isEnabled = false;
};

} // namespace kestrova
