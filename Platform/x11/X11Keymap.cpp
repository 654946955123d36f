#include "Platform/x11/X11Keymap.h"

#include "Platform/x11/KeymapText.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"
#include "Platform/x11/XcbXkb.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <xkbcommon/xkbcommon-x11.h>

namespace kestrova {

namespace {
Q_LOGGING_CATEGORY(lcKeymap, "kestrova.keymap")
} // namespace

void X11Keymap::Unref::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

void X11Keymap::Unref::operator()(xkb_keymap* keymap) const {
    xkb_keymap_unref(keymap);
}

X11Keymap::X11Keymap() {
    m_connection = toolkitConnection();
    if (!m_connection)
        return;
    // The toolkit has asked for this extension's events already.
    if (const auto* const extension = xcb_get_extension_data(m_connection, &xcb_xkb_id);
        extension && extension->present)
        m_firstKeyboardEvent = extension->first_event;
    qGuiApp->installNativeEventFilter(this);
}

X11Keymap::~X11Keymap() = default;

std::uint32_t X11Keymap::currentLayout() const {
    if (!m_connection)
        return 0;
    const XcbReply<xcb_xkb_get_state_reply_t> state{xcb_xkb_get_state_reply(
        m_connection, xcb_xkb_get_state(m_connection, XCB_XKB_ID_USE_CORE_KBD), nullptr)};
    return state ? state->group : 0;
}

std::optional<QString> X11Keymap::text(xcb_keycode_t key, std::uint32_t layout, std::uint32_t locked) {
    auto* const map = keymap();
    return map ? textOfKey(map, key, layout, locked) : std::nullopt;
}

std::optional<QString> X11Keymap::latinText(xcb_keycode_t key, std::uint32_t layout) {
    auto* const map = keymap();
    return map ? textOfKey(map, key, latinLayout(map, layout)) : std::nullopt;
}

std::optional<xcb_keycode_t> X11Keymap::keyGiving(xcb_keysym_t keysym, std::uint32_t layout) {
    auto* const map = keymap();
    if (!map)
        return {};
    auto key = kestrova::keyGiving(map, keysym, layout);
    if (!key)
        key = kestrova::keyGiving(map, keysym, latinLayout(map, layout));
    return key ? std::optional{static_cast<xcb_keycode_t>(*key)} : std::nullopt;
}

const ModifierMap& X11Keymap::modifiers() {
    if (!m_modifiers)
        m_modifiers = m_connection ? readModifierMap(m_connection) : ModifierMap{};
    return *m_modifiers;
}

bool X11Keymap::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    constexpr std::uint8_t sentByClient = 0x80;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    const auto type = static_cast<std::uint8_t>(event->response_type & ~sentByClient);
    // Of this extension all events are of one type, and the next byte tells them apart.
    const bool isNewKeyboard =
        m_firstKeyboardEvent != 0 && type == m_firstKeyboardEvent &&
        (event->pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event->pad0 == XCB_XKB_MAP_NOTIFY);
    if (isNewKeyboard || type == XCB_MAPPING_NOTIFY) {
        m_keymap.reset();
        m_modifiers.reset();
    }
    return false;
}

xkb_keymap* X11Keymap::keymap() {
    if (m_keymap || !m_connection)
        return m_keymap.get();
    if (!m_context)
        m_context.reset(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const auto device = xkb_x11_get_core_keyboard_device_id(m_connection);
    if (m_context && device >= 0)
        m_keymap.reset(xkb_x11_keymap_new_from_device(m_context.get(), m_connection, device,
                                                      XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!m_keymap)
        qCWarning(lcKeymap, "[Keymap] The keyboard's layout cannot be read");
    return m_keymap.get();
}

} // namespace kestrova
