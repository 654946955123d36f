#pragma once

#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/DesktopWindows.h"
#include "tests/desktop/TypingTargetMessages.h"

#include <vector>

namespace kestrova::test {

/// A program that a person types into and that tells every key and every paste that reached it. Its first
/// window has number 0. Throws std::runtime_error if it does not do what it is asked.
class TypingTarget {
public:
    /// One press or release as the window got it.
    struct Key {
        bool isPress = false;
        int window = 0;
        xcb_keycode_t key = 0;
        /// The modifiers that were on before it.
        std::uint16_t modifiers = 0;

        bool operator==(const Key&) const = default;
    };

    /// Starts it with one window for each title, one after the other; the last one has the keyboard then.
    TypingTarget(DesktopSession& session, const QStringList& titles);

    Process& process() { return *m_process; }
    xcb_window_t window(int number) const { return m_windows.at(static_cast<std::size_t>(number)); }

    void holdKeyboard() { send(TypingTargetMessage::HoldKeyboard, 0, "held"); }
    void letKeyboardGo() { send(TypingTargetMessage::LetKeyboardGo, 0, "letGo"); }
    /// From now on takes the focus whenever `victim` gets it; XCB_WINDOW_NONE ends that.
    void stealFocusFrom(xcb_window_t victim) { send(TypingTargetMessage::StealFocusFrom, victim, "waiting"); }
    bool hasStolen() const { return lines().contains("stolen"); }

    /// All keys so far, in order.
    std::vector<Key> keys() const;
    /// The keys pressed without a modifier but locks, as the letters and digits that they are on an American
    /// keyboard.
    QByteArray typed() const;
    /// Those that one window got.
    QByteArray typed(int window) const;
    /// How often the window has lost the focus to another one so far.
    int focusLosses(int window) const {
        return static_cast<int>(count("focusOut " + QByteArray::number(window)));
    }
    /// The texts pasted into the window so far, in order.
    QStringList pasted(int window) const;

private:
    QList<QByteArray> lines() const;
    qsizetype count(const QByteArray& line) const { return lines().count(line); }
    void send(TypingTargetMessage message, std::uint32_t argument, const char* answer);

    XConnection m_x;
    Process* m_process = nullptr;
    std::vector<xcb_window_t> m_windows;
};

} // namespace kestrova::test
