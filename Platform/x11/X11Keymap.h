#pragma once

#include "Platform/x11/KeyModifiers.h"

#include <QAbstractNativeEventFilter>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>

struct xkb_context;
struct xkb_keymap;

namespace kestrova {

/// The server's keymap, read when it is first asked for and again when it has changed. On the toolkit's own
/// connection; where the toolkit does not run on X11 there is none. Main thread only.
class X11Keymap final : public QAbstractNativeEventFilter {
public:
    X11Keymap();
    X11Keymap(const X11Keymap&) = delete;
    X11Keymap& operator=(const X11Keymap&) = delete;
    ~X11Keymap() override;

    /// The layout that the person types in now. Waits for the server.
    std::uint32_t currentLayout() const;
    /// The layout of an event's X state.
    static std::uint32_t layoutOfState(std::uint32_t state) { return (state >> 13) & 3; }

    /// What the key gives in `layout` with nothing held but the modifiers of `locked`.
    std::optional<QString> text(xcb_keycode_t key, std::uint32_t layout, std::uint32_t locked = 0);
    /// What it gives with nothing held in `layout` or, if that one has no Latin letters, in the first layout
    /// that has.
    std::optional<QString> latinText(xcb_keycode_t key, std::uint32_t layout);
    /// The key that gives the symbol in `layout` or, if that one has no such key, in the first layout with
    /// Latin letters.
    std::optional<xcb_keycode_t> keyGiving(xcb_keysym_t keysym, std::uint32_t layout);
    const ModifierMap& modifiers();

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Unref {
        void operator()(xkb_context* context) const;
        void operator()(xkb_keymap* keymap) const;
    };

    xkb_keymap* keymap();

    xcb_connection_t* m_connection = nullptr;
    std::uint8_t m_firstKeyboardEvent = 0;
    std::unique_ptr<xkb_context, Unref> m_context;
    std::unique_ptr<xkb_keymap, Unref> m_keymap;
    std::optional<ModifierMap> m_modifiers;
};

} // namespace kestrova
