#include "tests/desktop/Shelf.h"

#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/Waiting.h"

#include <algorithm>

namespace kestrova::test {

using namespace Qt::StringLiterals;

std::optional<xcb_window_t> Shelf::window() const {
    // The tray icon, menus and toasts are far lower.
    constexpr int kHeight = 540;
    const auto windows = m_windows.ofProcess(m_program.process().pid());
    const auto found = std::ranges::find_if(
        windows, [this](xcb_window_t candidate) { return m_windows.frame(candidate).height() == kHeight; });
    return found == windows.end() ? std::nullopt : std::optional(*found);
}

bool Shelf::hasKeyboard() const {
    const auto found = window();
    return found && m_windows.hasKeyboard(*found);
}

QRect Shelf::frame() const {
    const auto found = window();
    return found ? m_windows.frame(*found) : QRect();
}

std::vector<xcb_window_t> Shelf::menus() const {
    const auto own = window();
    const QRect area = frame();
    auto found = m_windows.ofProcess(m_program.process().pid());
    // The toast and the tray's icon lie outside.
    std::erase_if(found, [&](xcb_window_t candidate) {
        return candidate == own || !area.contains(m_windows.frame(candidate).center());
    });
    return found;
}

bool Shelf::waitForMenus(std::size_t count) const {
    return eventually([&] { return menus().size() == count; });
}

bool Shelf::open() {
    // One that is shown while it still fades out goes with the fade.
    constexpr std::chrono::milliseconds kLongerThanAFade{500};
    return eventually([&] {
        return m_program.command({u"show"_s}).exitStatus == 0 &&
               eventually([this] { return hasKeyboard(); }, kLongerThanAFade);
    });
}

bool Shelf::waitForKeyboard() const {
    return eventually([this] { return hasKeyboard(); });
}

bool Shelf::waitUntilGone() const {
    return eventually([this] { return !isUp(); });
}

void Shelf::search(const QByteArray& text) {
    m_keys.chord({keyAt::control, keyAt::a});
    m_keys.tap(keyAt::backspace);
    m_keys.type(text);
}

std::optional<QByteArray> Shelf::searchText() {
    const SelectionOwner before(m_display, plainText("to be replaced by the copy"));
    // An empty field copies nothing, which cannot be told from a copy that has not come yet.
    const QByteArray mark = "0";
    m_keys.tap(keyAt::end);
    m_keys.type(mark);
    m_keys.chord({keyAt::control, keyAt::a});
    m_keys.chord({keyAt::control, keyAt::c});
    m_keys.tap(keyAt::end);
    m_keys.tap(keyAt::backspace);
    if (!eventually([&before] { return before.isReplaced(); }))
        return std::nullopt;
    auto copied = ClipboardReader(m_display).read("UTF8_STRING");
    if (!copied || !copied->endsWith(mark))
        return std::nullopt;
    copied->chop(mark.size());
    return copied;
}

} // namespace kestrova::test
