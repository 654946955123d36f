#pragma once

#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"
#include "KeyboardShortcuts/KeyText.h"
#include "KeyboardShortcuts/NameObservers.h"
#include "KeyboardShortcuts/ShortcutName.h"
#include "KeyboardShortcuts/SpecialKey.h"
#include "Platform/UserDefaults.h"

#include <QSet>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

class KeyboardLayout;
class MenuTracking;

/// The shortcuts that a person can set, by name: keeps them in the user defaults, keeps the host's hot keys
/// in step with what is stored, and runs the actions of a name when its shortcut is pressed. One object
/// serves the whole process. Main thread only.
class KeyboardShortcuts {
public:
    using Name = ShortcutName;
    using Shortcut = kestrova::Shortcut;
    using Key = kestrova::Key;
    using SpecialKey = kestrova::SpecialKey;
    using Action = std::function<void()>;

    /// A name whose shortcut has no effect, because the host did not take it.
    struct Refusal {
        Name name;
        /// The shortcut as it is shown.
        QString description;
        /// Of HotKeys; `HotKeys::alreadyHeld` if another program has it.
        int status = 0;
    };

    /// The ports outlive the object, which takes over the closures of `menuTracking`.
    KeyboardShortcuts(HotKeys& hotKeys, UserDefaults& defaults, const KeyboardLayout& layout,
                      MenuTracking& menuTracking, const QLocale& locale = QLocale::system());
    KeyboardShortcuts(const KeyboardShortcuts&) = delete;
    KeyboardShortcuts& operator=(const KeyboardShortcuts&) = delete;
    ~KeyboardShortcuts();

    /// The name with that raw value. A default is stored, and so is live, if nothing at all was stored
    /// before; a shortcut that the person set or cleared stays as it is.
    Name name(const QString& rawValue, std::optional<Shortcut> defaultShortcut = {});

    /// Adds an action, which then stays, and makes the name's shortcut live. Actions of one name run in the
    /// order in which they were added.
    void onKeyDown(const Name& name, Action action);
    void onKeyUp(const Name& name, Action action);

    /// What is stored; absent if it was cleared, never set, or is no shortcut.
    std::optional<Shortcut> getShortcut(const Name& name) const;
    /// Stores a shortcut, or clears it, and puts the hot keys in step. One that the host refuses is stored
    /// all the same.
    void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name);
    /// Goes back to the defaults; names without one are cleared.
    void reset(const std::vector<Name>& names);
    /// Resets every name that this object has come to know.
    void resetAll();
    /// Takes the name's hot key from the host, unless another name has the same shortcut, and gives it back.
    /// What is stored stays.
    void disable(const Name& name);
    void enable(const Name& name);

    /// Calls `observer` with the name after each operation that stored something, also the value it already
    /// had, until the result goes.
    ShortcutObservation observeShortcutByNameDidChange(ShortcutObservation::Observer observer);

    bool isEnabled() const { return m_isEnabled; }
    /// The layer as a whole.
    void setEnabled(bool isEnabled);
    bool isPaused() const { return m_isPaused; }
    /// True while a shortcut is being recorded: presses are swallowed and do nothing.
    void setPaused(bool isPaused) { m_isPaused = isPaused; }
    bool isMenuOpen() const { return m_isMenuOpen; }

    /// Those that the host was asked for on behalf of some name.
    const QSet<Shortcut>& registeredShortcuts() const { return m_registeredShortcuts; }
    /// In the order in which the names were made.
    std::vector<Refusal> refusedShortcuts() const;

    /// The shortcut as it is shown.
    QString description(const Shortcut& shortcut) const { return m_keyText.description(shortcut); }
    const KeyText& keyText() const { return m_keyText; }

private:
    using Handlers = std::vector<std::pair<Name, std::vector<Action>>>;

    void addHandler(Handlers& handlers, const Name& name, Action action);
    void dispatch(const Shortcut& shortcut, const Handlers& handlers) const;
    void registerIfNeeded(const Shortcut& shortcut);
    void unregisterUnlessUsedBesides(const Name& name, const Shortcut& shortcut);
    void setMenuOpen(bool isMenuOpen);
    void updateListening();
    void remember(const Name& name);
    /// Somebody else has stored something under the name, such as a person with an editor.
    void storedValueChanged(const Name& name);

    UserDefaults& m_defaults;
    MenuTracking& m_menuTracking;
    const KeyText m_keyText;
    CarbonKeyboardShortcuts m_carbon;
    NameObservers m_observers;
    std::vector<Name> m_names;
    struct Watched {
        /// As of the last time that the hot keys were put in step with it.
        std::optional<Shortcut> shortcut;
        DefaultsObservation observation;
    };
    /// By raw value.
    std::map<QString, Watched> m_watched;
    Handlers m_keyDownHandlers;
    Handlers m_keyUpHandlers;
    QSet<Shortcut> m_registeredShortcuts;
    bool m_isEnabled = true;
    bool m_isPaused = false;
    bool m_isMenuOpen = false;
};

} // namespace kestrova
