#include "Platform/x11/X11EventMonitors.h"

#include "Platform/x11/PointerWindows.h"
#include "Platform/x11/TextControlKeys.h"
#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/X11Keymap.h"

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

std::uint32_t maskOfButton(std::uint32_t button) {
    constexpr std::uint32_t left = 1;
    constexpr std::uint32_t right = 3;
    return button == left ? EventMask::leftMouseDown : button == right ? EventMask::rightMouseDown : 0;
}

bool isKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

/// The window that a key goes to, which is an open popup whichever window the server sends it to.
const QWindow& receivingWindow(const QWindow& window) {
    const auto* const popup = QApplication::activePopupWidget();
    const auto* const popupWindow = popup ? popup->windowHandle() : nullptr;
    return popupWindow ? *popupWindow : window;
}

} // namespace

X11EventMonitors::X11EventMonitors(X11Keymap& keymap)
    : m_keymap(keymap),
      m_connection(toolkitConnection()),
      m_own(m_connection),
      m_global([this](bool isEmpty) {
          const auto* const setup = xcb_get_setup(m_connection);
          m_raw->select(xcb_setup_roots_iterator(setup).data->root,
                        isEmpty ? 0 : std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS});
          xcb_flush(m_connection);
          if (isEmpty)
              qGuiApp->removeNativeEventFilter(&m_mouseFilter);
          else
              qGuiApp->installNativeEventFilter(&m_mouseFilter);
      }),
      m_local([this](bool isEmpty) {
          m_held.clear();
          if (isEmpty)
              qApp->removeEventFilter(&m_windowFilter);
          else
              qApp->installEventFilter(&m_windowFilter);
      }) {
    if (m_connection)
        m_raw.emplace(m_connection, XInputRaw::Version::AskedByToolkit);
    if (!m_raw || !m_raw->isAvailable())
        qCWarning(lcEventMonitors, "[EventMonitors] The mouse cannot be watched: no input extension");
}

X11EventMonitors::~X11EventMonitors() = default;

std::unique_ptr<EventMonitor> X11EventMonitors::addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) {
    if (!m_raw || !m_raw->isAvailable())
        return nullptr;
    return m_global.add(mask, std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::addLocalMonitor(std::uint32_t mask, LocalHandler handler) {
    return m_local.add(mask, std::move(handler));
}

bool X11EventMonitors::MouseFilter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if (m_monitors.m_raw->kind(event) != XCB_INPUT_RAW_BUTTON_PRESS)
        return false;
    m_monitors.onRawButtonPress(reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event).detail);
    return true;
}

void X11EventMonitors::onRawButtonPress(std::uint32_t button) const {
    const auto kind = maskOfButton(button);
    // A press that closes one of our popups comes here before the popup knows of it.
    if (kind == 0 || QApplication::activePopupWidget() || isPointerOverOwnWindow())
        return;
    m_global.any(kind, [](const GlobalHandler& handler) {
        handler();
        return false;
    });
}

bool X11EventMonitors::isPointerOverOwnWindow() const {
    const auto under = windowsUnderPointer(m_connection);
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

bool X11EventMonitors::WindowFilter::eventFilter(QObject* receiver, QEvent* event) {
    // The window gets everything first and passes it on to its widgets. Its filters get what comes after
    // those of the application, this key included.
    if (receiver->isWindowType() && isKey(*event))
        receiver->installEventFilter(&m_monitors.m_keyFilter);
    return false;
}

bool X11EventMonitors::KeyFilter::eventFilter(QObject* receiver, QEvent* event) {
    const auto& window = static_cast<const QWindow&>(*receiver);
    if (isKey(*event))
        return m_monitors.onKey(receivingWindow(window), static_cast<const QKeyEvent&>(*event));
    if (event->type() == QEvent::FocusOut)
        m_monitors.onFocusOut(window);
    return false;
}

bool X11EventMonitors::onKey(const QWindow& window, const QKeyEvent& key) {
    const auto virtualKey = virtualKeyOfX11Key(key.nativeScanCode());
    if (!virtualKey)
        return false;
    const auto& modifiers = m_keymap.modifiers();
    const auto x11Key = static_cast<xcb_keycode_t>(key.nativeScanCode());
    if (key.type() == QEvent::KeyRelease)
        m_repeats.noteRelease(x11Key, key.timestamp());
    const bool isRepeat =
        key.type() == QEvent::KeyPress && (m_repeats.isRepeat(x11Key, key.timestamp()) || key.isAutoRepeat());
    if (modifiers.maskOfKey[x11Key] != 0)
        return onModifierKey(window.winId(), *virtualKey, key);
    if (key.type() != QEvent::KeyPress)
        return false;
    const auto state = static_cast<std::uint16_t>(key.nativeModifiers());
    const auto control = textControlState(QApplication::focusWidget());
    if (control && belongsToTextControl(*virtualKey, state, modifiers, *control))
        return false;
    // A keypad's digits are its digits while they are what it types.
    const auto locked = isKeypadKey(*virtualKey) ? std::uint32_t{state} & modifiers.numLock : 0;
    const auto text = m_keymap.text(x11Key, X11Keymap::layoutOfState(key.nativeModifiers()), locked);
    return tell({.kind = EventMask::keyDown,
                 .window = window.winId(),
                 .key = {.keyCode = *virtualKey,
                         .modifierFlags = localEventFlags(state, *virtualKey, modifiers),
                         .charactersIgnoringModifiers = text.value_or(QString{}),
                         .isRepeat = isRepeat}});
}

bool X11EventMonitors::onModifierKey(std::uint64_t window, std::uint16_t virtualKey, const QKeyEvent& key) {
    const auto& modifiers = m_keymap.modifiers();
    const auto x11Key = static_cast<xcb_keycode_t>(key.nativeScanCode());
    const auto before = static_cast<std::uint16_t>(key.nativeModifiers());
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

bool X11EventMonitors::tell(const LocalEvent& event) const {
    return m_local.any(event.kind, [&](const LocalHandler& handler) { return handler(event); });
}

} // namespace kestrova
