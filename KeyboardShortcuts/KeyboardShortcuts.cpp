#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "Platform/KeyboardLayout.h"
#include "Platform/MenuTracking.h"
#include "Platform/UserDefaults.h"

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

QString defaultsKey(const ShortcutName& name) {
    return QStringLiteral("KeyboardShortcuts_") + name.rawValue;
}

} // namespace

KeyboardShortcuts::KeyboardShortcuts(HotKeys& hotKeys, UserDefaults& defaults, const KeyboardLayout& layout,
                                     MenuTracking& menuTracking, const QLocale& locale)
    : m_defaults(defaults),
      m_menuTracking(menuTracking),
      m_keyText(layout, locale),
      m_carbon(hotKeys, m_keyText) {
    m_menuTracking.onDidBegin = [this] { setMenuOpen(true); };
    m_menuTracking.onDidEnd = [this] { setMenuOpen(false); };
}

KeyboardShortcuts::~KeyboardShortcuts() {
    m_menuTracking.onDidBegin = nullptr;
    m_menuTracking.onDidEnd = nullptr;
}

KeyboardShortcuts::Name KeyboardShortcuts::name(const QString& rawValue,
                                                std::optional<Shortcut> defaultShortcut) {
    Name made{rawValue, defaultShortcut};
    remember(made);
    if (defaultShortcut && m_defaults.object(defaultsKey(made)).isUndefined())
        setShortcut(defaultShortcut, made);
    return made;
}

void KeyboardShortcuts::onKeyDown(const Name& name, Action action) {
    addHandler(m_keyDownHandlers, name, std::move(action));
}

void KeyboardShortcuts::onKeyUp(const Name& name, Action action) {
    addHandler(m_keyUpHandlers, name, std::move(action));
}

std::optional<Shortcut> KeyboardShortcuts::getShortcut(const Name& name) const {
    const auto stored = m_defaults.text(defaultsKey(name));
    return stored ? decodedShortcut(*stored) : std::nullopt;
}

void KeyboardShortcuts::setShortcut(const std::optional<Shortcut>& shortcut, const Name& name) {
    remember(name);
    if (const auto old = getShortcut(name))
        unregisterUnlessUsedBesides(name, *old);
    m_watched[name.rawValue].shortcut = shortcut;
    if (shortcut) {
        registerIfNeeded(*shortcut);
        m_defaults.set(defaultsKey(name), encoded(*shortcut));
    } else if (name.defaultShortcut) {
        // Keeps the default from coming back.
        m_defaults.set(defaultsKey(name), false);
    } else {
        m_defaults.set(defaultsKey(name), QJsonValue::Undefined);
    }
    m_observers.notify(name);
}

void KeyboardShortcuts::reset(const std::vector<Name>& names) {
    for (const auto& name : names)
        setShortcut(name.defaultShortcut, name);
}

void KeyboardShortcuts::resetAll() {
    // A copy: an observer may make a name.
    reset(std::vector<Name>(m_names));
}

void KeyboardShortcuts::disable(const Name& name) {
    if (const auto shortcut = getShortcut(name))
        unregisterUnlessUsedBesides(name, *shortcut);
}

void KeyboardShortcuts::enable(const Name& name) {
    if (const auto shortcut = getShortcut(name))
        registerIfNeeded(*shortcut);
}

ShortcutObservation
KeyboardShortcuts::observeShortcutByNameDidChange(ShortcutObservation::Observer observer) {
    return m_observers.add(std::move(observer));
}

void KeyboardShortcuts::setEnabled(bool isEnabled) {
    m_isEnabled = isEnabled;
    updateListening();
}

std::vector<KeyboardShortcuts::Refusal> KeyboardShortcuts::refusedShortcuts() const {
    std::vector<Refusal> refused;
    for (const auto& name : m_names) {
        const auto shortcut = getShortcut(name);
        if (!shortcut)
            continue;
        const auto refusal = m_carbon.refusals().constFind(*shortcut);
        if (refusal != m_carbon.refusals().cend())
            refused.push_back({name, description(*shortcut), refusal.value()});
    }
    return refused;
}

void KeyboardShortcuts::addHandler(Handlers& handlers, const Name& name, Action action) {
    remember(name);
    auto ofName = std::ranges::find(handlers, name, &Handlers::value_type::first);
    if (ofName == handlers.end())
        ofName = handlers.insert(handlers.end(), {name, {}});
    ofName->second.push_back(std::move(action));
    enable(name);
}

void KeyboardShortcuts::dispatch(const Shortcut& shortcut, const Handlers& handlers) const {
    if (m_isPaused)
        return;
    // All are found before the first one runs: an action may add handlers and change shortcuts.
    std::vector<Action> found;
    for (const auto& [name, actions] : handlers)
        if (getShortcut(name) == shortcut)
            found.insert(found.end(), actions.begin(), actions.end());
    for (const auto& action : found)
        action();
}

void KeyboardShortcuts::registerIfNeeded(const Shortcut& shortcut) {
    if (m_registeredShortcuts.contains(shortcut))
        return;
    m_carbon.registerShortcut(
        shortcut, [this](const Shortcut& pressed) { dispatch(pressed, m_keyDownHandlers); },
        [this](const Shortcut& released) { dispatch(released, m_keyUpHandlers); });
    m_registeredShortcuts.insert(shortcut);
}

void KeyboardShortcuts::unregisterUnlessUsedBesides(const Name& name, const Shortcut& shortcut) {
    const bool isUsed = std::ranges::any_of(m_names, [&](const Name& other) {
        return other.rawValue != name.rawValue && getShortcut(other) == shortcut;
    });
    if (isUsed)
        return;
    m_carbon.unregisterShortcut(shortcut);
    m_registeredShortcuts.remove(shortcut);
}

void KeyboardShortcuts::setMenuOpen(bool isMenuOpen) {
    if (m_isMenuOpen == isMenuOpen)
        return;
    m_isMenuOpen = isMenuOpen;
    updateListening();
}

void KeyboardShortcuts::updateListening() {
    using Listening = CarbonKeyboardShortcuts::Listening;
    if (!m_isEnabled)
        m_carbon.setListening(Listening::nothing);
    else
        m_carbon.setListening(m_isMenuOpen ? Listening::rawKeys : Listening::hotKeys);
}

void KeyboardShortcuts::remember(const Name& name) {
    if (std::ranges::find(m_names, name) != m_names.end())
        return;
    m_names.push_back(name);
    auto& watched = m_watched[name.rawValue];
    watched.shortcut = getShortcut(name);
    watched.observation = m_defaults.observe(defaultsKey(name), [this, name] { storedValueChanged(name); });
}

void KeyboardShortcuts::storedValueChanged(const Name& name) {
    const auto stored = getShortcut(name);
    auto& known = m_watched[name.rawValue].shortcut;
    // What this object stores itself is in step already.
    if (stored == known)
        return;
    if (const auto old = std::exchange(known, stored))
        unregisterUnlessUsedBesides(name, *old);
    if (stored)
        registerIfNeeded(*stored);
    m_observers.notify(name);
}

} // namespace kestrova
