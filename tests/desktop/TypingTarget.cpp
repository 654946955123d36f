#include "tests/desktop/TypingTarget.h"

#include "tests/desktop/Waiting.h"

#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

/// The character of a key on an American keyboard, without modifiers; 0 for all but letters and digits.
char characterAt(xcb_keycode_t key) {
    struct Row {
        xcb_keycode_t first;
        const char* characters;
    };
    constexpr Row kRows[]{{10, "1234567890"}, {24, "qwertyuiop"}, {38, "asdfghjkl"}, {52, "zxcvbnm"}};
    for (const Row& row : kRows) {
        const auto length = static_cast<int>(qstrlen(row.characters));
        if (key >= row.first && key < row.first + length)
            return row.characters[key - row.first];
    }
    return 0;
}

QByteArray charactersOf(const std::vector<TypingTarget::Key>& keys) {
    constexpr int kChords = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    QByteArray text;
    for (const TypingTarget::Key& key : keys) {
        const char character = characterAt(key.key);
        if (key.isPress && (key.modifiers & kChords) == 0 && character != 0)
            text.append(character);
    }
    return text;
}

} // namespace

TypingTarget::TypingTarget(DesktopSession& session, const QStringList& titles) : m_x(session.display()) {
    m_process = &session.start({.program = QStringLiteral(TYPING_TARGET_BINARY), .arguments = titles});
    const auto areThere = [&] {
        m_windows.clear();
        for (const QByteArray& line : lines()) {
            if (line.startsWith("window "))
                m_windows.push_back(line.mid(7).toUInt());
        }
        return std::ssize(m_windows) == titles.size();
    };
    DesktopWindows windows(session.display());
    const auto areShown = [&] {
        if (windows.ofProcess(m_process->pid()).size() == m_windows.size())
            return true;
        // A window manager that has just come may have missed that they want to be shown.
        for (const xcb_window_t window : m_windows)
            xcb_map_window(m_x.get(), window);
        xcb_flush(m_x.get());
        return false;
    };
    if (!eventually(areThere) || !eventually(areShown) || !windows.activate(m_windows.back()))
        throw std::runtime_error("the typing target did not come: " +
                                 m_process->standardError().toStdString());
}

QList<QByteArray> TypingTarget::lines() const {
    const QByteArray output = m_process->standardOutput();
    // The last line may still be on its way.
    return output.left(output.lastIndexOf('\n') + 1).split('\n');
}

void TypingTarget::send(TypingTargetMessage message, std::uint32_t argument, const char* answer) {
    const qsizetype before = count(answer);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_windows.front();
    event.type = m_x.atom(typingTargetMessages::kType);
    event.data.data32[0] = static_cast<std::uint32_t>(message);
    event.data.data32[1] = argument;
    xcb_send_event(m_x.get(), 0, m_windows.front(), XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_x.get());
    if (!eventually([&] { return count(answer) > before; }))
        throw std::runtime_error(std::string("the typing target is not ") + answer);
}

std::vector<TypingTarget::Key> TypingTarget::keys() const {
    std::vector<Key> all;
    for (const QByteArray& line : lines()) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 4 && (words[0] == "press" || words[0] == "release"))
            all.push_back({words[0] == "press", words[1].toInt(),
                           static_cast<xcb_keycode_t>(words[2].toUInt()),
                           static_cast<std::uint16_t>(words[3].toUInt())});
    }
    return all;
}

QByteArray TypingTarget::typed() const {
    return charactersOf(keys());
}

QByteArray TypingTarget::typed(int window) const {
    auto all = keys();
    std::erase_if(all, [window](const Key& key) { return key.window != window; });
    return charactersOf(all);
}

QStringList TypingTarget::pasted(int window) const {
    QStringList texts;
    for (const QByteArray& line : lines()) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 3 && words[0] == "text" && words[1].toInt() == window)
            texts.append(QString::fromUtf8(QByteArray::fromPercentEncoding(words[2])));
    }
    return texts;
}

} // namespace kestrova::test
