#include "Platform/x11/X11EventMonitors.h"

#include "Platform/x11/PointerWindows.h"
#include "Platform/x11/TextControlKeys.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/X11HotKeys.h"
#include "Platform/x11/X11Keymap.h"
#include "Platform/x11/XcbReply.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QWidget>
#include <QWindow>

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcEventMonitors, "kestrova.eventmonitors")

// Keys from the server have the time of their press. Those that the accessibility bridge sends on to the
// window and those that an input method sends to a control have none.
constexpr quint64 noTime = 0;
constexpr quint64 timeOfSeen = 1;

std::uint32_t maskOfButton(std::uint32_t button) {
    constexpr std::uint32_t left = 1;
    constexpr std::uint32_t right = 3;
    return button == left ? EventMask::leftMouseDown : button == right ? EventMask::rightMouseDown : 0;
}

bool isKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

/// Of the pointer, or a press of a key.
bool isInput(const QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
        return true;
    default:
        return false;
    }
}

/// The window that a key goes to, which is an open popup whichever window the server sends it to.
const QWindow& receivingWindow(const QWindow& window) {
    const auto* const popup = QApplication::activePopupWidget();
    const auto* const popupWindow = popup ? popup->windowHandle() : nullptr;
    return popupWindow ? *popupWindow : window;
}

} // namespace

X11EventMonitors::X11EventMonitors(X11Keymap& keymap, X11HotKeys& hotKeys)
    : m_keymap(keymap),
      m_hotKeys(hotKeys),
      m_connection(toolkitConnection()),
      m_own(m_connection),
      m_global([this](bool isEmpty) {
          const auto* const setup = xcb_get_setup(m_connection);
          m_raw->select(xcb_setup_roots_iterator(setup).data->root,
                        isEmpty ? 0 : std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS});
          xcb_flush(m_connection);
          m_presses->clear();
          if (isEmpty)
              qGuiApp->removeNativeEventFilter(&m_mouseFilter);
          else
              qGuiApp->installNativeEventFilter(&m_mouseFilter);
      }),
      m_local([this](bool isEmpty) {
          m_held.clear();
          if (isEmpty) {
              qApp->removeEventFilter(&m_windowFilter);
              qApp->removeNativeEventFilter(&m_arrivalFilter);
          } else {
              qApp->installEventFilter(&m_windowFilter);
              qApp->installNativeEventFilter(&m_arrivalFilter);
          }
      }) {
    if (m_connection)
        m_raw.emplace(m_connection, XInputRaw::Version::AskedByToolkit);
    if (m_raw && m_raw->isAvailable())
        m_presses.emplace(m_connection, [this](const ButtonPress& press) { onPressNotSeen(press); });
    else
        qCWarning(lcEventMonitors, "[EventMonitors] The mouse cannot be watched: no input extension");
}

X11EventMonitors::~X11EventMonitors() = default;

std::unique_ptr<EventMonitor> X11EventMonitors::addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) {
    if (!m_presses)
        return nullptr;
    return m_global.add(mask, std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::addLocalMonitor(std::uint32_t mask, LocalHandler handler) {
    return m_local.add(mask, std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::tapKeyDowns(KeyDownHandler handler) {
    return m_hotKeys.tapKeyDowns(std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::addGlobalKeyDownMonitor(KeyDownHandler handler) {
    return m_hotKeys.addGlobalKeyDownMonitor(std::move(handler));
}

bool X11EventMonitors::MouseFilter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    auto& presses = *m_monitors.m_presses;
    if (presses.take(event))
        return true;
    // The toolkit's windows get presses by the extension, or where that is switched off the old way.
    if ((event.response_type & 0x7f) == XCB_BUTTON_PRESS) {
        const auto& own = reinterpret_cast<const xcb_button_press_event_t&>(event);
        presses.noteOwn({.button = own.detail, .time = own.time});
    }
    const auto kind = m_monitors.m_raw->kind(event);
    if (kind == XCB_INPUT_BUTTON_PRESS) {
        const auto& own = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
        presses.noteOwn({.button = own.detail, .time = own.time});
    }
    if (kind != XCB_INPUT_RAW_BUTTON_PRESS)
        return false;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    m_monitors.onRawButtonPress({.button = raw.detail, .time = raw.time});
    return true;
}

void X11EventMonitors::onRawButtonPress(const ButtonPress& press) {
    // A press that closes one of our popups comes here before the popup knows of it.
    if (maskOfButton(press.button) == 0 || QApplication::activePopupWidget())
        return;
    if (!isPointerOverOwnWindow())
        m_presses->add(press);
}

void X11EventMonitors::onPressNotSeen(const ButtonPress& press) const {
    m_global.any(maskOfButton(press.button), [](const GlobalHandler& handler) {
        handler();
        return false;
    });
}

bool X11EventMonitors::isPointerOverOwnWindow() const {
    const auto under = windowsUnderPointer(m_connection);
    // A window manager may keep a press on a window until it has made up its mind; its own event comes late.
    if (std::ranges::any_of(under, [this](xcb_window_t window) { return m_own.contains(window); }))
        return true;
    // The frame around a window is the window manager's, but a person takes it for the window.
    return !under.empty() &&
           std::ranges::any_of(QGuiApplication::topLevelWindows(), [&](const QWindow* window) {
               return window->handle() && window->isVisible() &&
                      outermostWindow(m_connection, static_cast<xcb_window_t>(window->winId())) ==
                          under.front();
           });
}

bool X11EventMonitors::ArrivalFilter::nativeEventFilter(const QByteArray& eventType, void* message,
                                                        qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& key = *static_cast<const xcb_key_press_event_t*>(message);
    const auto kind = key.response_type & 0x7f;
    if (kind == XCB_FOCUS_IN) {
        m_monitors.tellWhatIsHeld();
    } else if (kind == XCB_KEY_RELEASE) {
        m_repeats.noteRelease(key.detail, key.time);
        if (m_monitors.m_keymap.modifiers().maskOfKey[key.detail] != 0)
            m_monitors.m_unheardRelease = key.time;
    } else if (kind == XCB_KEY_PRESS) {
        const bool repeats = m_repeats.isRepeat(key.detail, key.time);
        m_repeating.set(key.detail, repeats);
        if (!repeats) {
            m_isNew.set(key.detail);
            // An input method may keep this press to itself, and leave us those that follow.
            m_monitors.m_swallowed.reset(key.detail);
        }
    }
    return false;
}

bool X11EventMonitors::ArrivalFilter::takeRepeat(std::uint8_t x11Key) {
    const bool isNew = m_isNew.test(x11Key);
    m_isNew.reset(x11Key);
    return !isNew && m_repeating.test(x11Key);
}

bool X11EventMonitors::WindowFilter::eventFilter(QObject* receiver, QEvent* event) {
    if (receiver->isWindowType() && isInput(*event))
        m_monitors.onInput(static_cast<const QInputEvent&>(*event));
    if (!isKey(*event))
        return false;
    // The window gets everything first and passes it on to its widgets. Its filters get what comes after
    // those of the application, this key included.
    if (receiver->isWindowType())
        receiver->installEventFilter(&m_monitors.m_keyFilter);
    auto& key = static_cast<QKeyEvent&>(*event);
    if (!receiver->isWidgetType() || key.timestamp() != noTime)
        return false;
    const auto* const window = static_cast<const QWidget*>(receiver)->window()->windowHandle();
    return window && m_monitors.takeKey(*window, key);
}

bool X11EventMonitors::KeyFilter::eventFilter(QObject* receiver, QEvent* event) {
    const auto& window = static_cast<const QWindow&>(*receiver);
    if (isKey(*event))
        return m_monitors.takeKey(receivingWindow(window), static_cast<QKeyEvent&>(*event));
    if (event->type() == QEvent::FocusOut)
        m_monitors.onFocusOut(window);
    return false;
}

bool X11EventMonitors::takeKey(const QWindow& window, QKeyEvent& key) {
    const bool isTaken = onKey(window, key);
    // From here on it goes from control to control, and at none of them is it news.
    if (key.timestamp() == noTime)
        key.setTimestamp(timeOfSeen);
    return isTaken;
}

bool X11EventMonitors::onKey(const QWindow& window, const QKeyEvent& key) {
    const auto virtualKey = virtualKeyOfX11Key(key.nativeScanCode());
    if (!virtualKey)
        return false;
    const auto& modifiers = m_keymap.modifiers();
    const auto x11Key = static_cast<xcb_keycode_t>(key.nativeScanCode());
    if (key.type() == QEvent::KeyRelease && key.timestamp() != noTime)
        m_repeats.noteRelease(x11Key, key.timestamp());
    const bool repeats = key.type() == QEvent::KeyPress && isRepeat(key);
    if (modifiers.maskOfKey[x11Key] != 0)
        return onModifierKey(window.winId(), *virtualKey, key);
    if (key.type() != QEvent::KeyPress)
        return false;
    if (repeats && m_swallowed.test(x11Key)) {
        tellOfPress(window, *virtualKey, key, repeats);
        return true;
    }
    const auto state = static_cast<std::uint16_t>(key.nativeModifiers());
    const auto control = textControlState(QApplication::focusWidget());
    const bool isSwallowed = !(control && belongsToTextControl(*virtualKey, state, modifiers, *control)) &&
                             tellOfPress(window, *virtualKey, key, repeats);
    if (!repeats)
        m_swallowed.set(x11Key, isSwallowed);
    return isSwallowed;
}

bool X11EventMonitors::tellOfPress(const QWindow& window, std::uint16_t virtualKey, const QKeyEvent& key,
                                   bool repeats) const {
    const auto& modifiers = m_keymap.modifiers();
    const auto x11Key = static_cast<xcb_keycode_t>(key.nativeScanCode());
    const auto state = static_cast<std::uint16_t>(key.nativeModifiers());
    // A keypad's digits are its digits while they are what it types.
    const auto locked = isKeypadKey(virtualKey) ? std::uint32_t{state} & modifiers.numLock : 0;
    const auto text = m_keymap.text(x11Key, X11Keymap::layoutOfState(key.nativeModifiers()), locked);
    return tell({.kind = EventMask::keyDown,
                 .window = window.winId(),
                 .key = {.keyCode = virtualKey,
                         .modifierFlags = localEventFlags(state, virtualKey, modifiers),
                         .charactersIgnoringModifiers = text.value_or(QString{}),
                         .isRepeat = repeats}});
}

bool X11EventMonitors::isRepeat(const QKeyEvent& press) {
    const auto x11Key = static_cast<xcb_keycode_t>(press.nativeScanCode());
    const bool follows = press.timestamp() == noTime ? m_arrivalFilter.takeRepeat(x11Key)
                                                     : m_repeats.isRepeat(x11Key, press.timestamp());
    return follows || press.isAutoRepeat();
}

bool X11EventMonitors::onModifierKey(std::uint64_t window, std::uint16_t virtualKey, const QKeyEvent& key) {
    const auto& modifiers = m_keymap.modifiers();
    const auto x11Key = static_cast<xcb_keycode_t>(key.nativeScanCode());
    const auto before = static_cast<std::uint16_t>(key.nativeModifiers());
    if (key.type() == QEvent::KeyRelease)
        m_unheardRelease.reset();
    const auto after = key.type() == QEvent::KeyPress ? m_held.afterPress(x11Key, before, modifiers)
                                                      : m_held.afterRelease(x11Key, before, modifiers);
    return tell({.kind = EventMask::flagsChanged,
                 .window = window,
                 .key = {.keyCode = virtualKey,
                         .modifierFlags = localHeldFlags(after, modifiers),
                         .charactersIgnoringModifiers = {},
                         .isRepeat = false}});
}

void X11EventMonitors::onFocusOut(const QWindow& window) {
    m_held.clear();
    // Modifiers that are let go elsewhere would stay held for ever.
    tell({.kind = EventMask::flagsChanged, .window = window.winId(), .key = {}});
}

void X11EventMonitors::onInput(const QInputEvent& event) {
    // An earlier one may only have waited for its turn, and so may the release behind it.
    if (m_unheardRelease && event.timestamp() > *m_unheardRelease) {
        m_unheardRelease.reset();
        tellWhatIsHeld();
    }
}

void X11EventMonitors::tellWhatIsHeld() {
    // The toolkit keeps to itself that the keyboard was elsewhere for a moment, with a grab, or with a drag.
    m_held.clear();
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    const XcbReply<xcb_query_pointer_reply_t> pointer{
        xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, root), nullptr)};
    if (!pointer)
        return;
    constexpr std::uint16_t allModifiers = 0xff;
    const auto state = static_cast<std::uint16_t>(pointer->mask & allModifiers);
    KeyEvent held;
    held.modifierFlags = localHeldFlags(state, m_keymap.modifiers());
    tell({.kind = EventMask::flagsChanged, .window = 0, .key = held});
}

bool X11EventMonitors::tell(const LocalEvent& event) const {
    return m_local.any(event.kind, [&](const LocalHandler& handler) { return handler(event); });
}

} // namespace kestrova
