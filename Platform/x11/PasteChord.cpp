#include "Platform/x11/PasteChord.h"

#include "Platform/x11/DesktopEntries.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

// Either half of the class, in any case.
constexpr std::array oldTerminals{"aterm"_L1, "eterm"_L1, "koi8rxterm"_L1, "mlterm"_L1,
                                  "mrxvt"_L1, "rxvt"_L1,  "urxvt"_L1,      "uxterm"_L1,
                                  "wterm"_L1, "xterm"_L1, "xvt"_L1};

constexpr std::array terminals{"alacritty"_L1,
                               "blackbox"_L1,
                               "com.raggesilver.blackbox"_L1,
                               "com.system76.cosmicterm"_L1,
                               "contour"_L1,
                               "cool-retro-term"_L1,
                               "deepin-terminal"_L1,
                               "foot"_L1,
                               "ghostty"_L1,
                               "com.mitchellh.ghostty"_L1,
                               "gnome-terminal"_L1,
                               "gnome-terminal-server"_L1,
                               "guake"_L1,
                               "hyper"_L1,
                               "io.elementary.terminal"_L1,
                               "kgx"_L1,
                               "org.gnome.console"_L1,
                               "kitty"_L1,
                               "konsole"_L1,
                               "org.kde.konsole"_L1,
                               "lilyterm"_L1,
                               "lxterminal"_L1,
                               "mate-terminal"_L1,
                               "org.gnome.ptyxis"_L1,
                               "ptyxis"_L1,
                               "org.wezfurlong.wezterm"_L1,
                               "wezterm"_L1,
                               "pantheon-terminal"_L1,
                               "qterminal"_L1,
                               "rio"_L1,
                               "roxterm"_L1,
                               "sakura"_L1,
                               "st"_L1,
                               "st-256color"_L1,
                               "tabby"_L1,
                               "terminator"_L1,
                               "terminology"_L1,
                               "termite"_L1,
                               "tilda"_L1,
                               "tilix"_L1,
                               "com.gexperts.tilix"_L1,
                               "warp"_L1,
                               "dev.warp.warp"_L1,
                               "xfce4-terminal"_L1,
                               "yakuake"_L1,
                               "org.kde.yakuake"_L1};

bool isAmong(const auto& names, const WindowClass& windowClass) {
    return std::ranges::any_of(names, [&](QLatin1StringView name) {
        return windowClass.instance.compare(name, Qt::CaseInsensitive) == 0 ||
               windowClass.name.compare(name, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

PasteChord pasteChordOf(const WindowClass& windowClass) {
    // First the terminals by their class: some call their instance as the old ones are called.
    if (isAmong(terminals, {.instance = {}, .name = windowClass.name}))
        return PasteChord::ControlShiftV;
    if (isAmong(oldTerminals, windowClass))
        return PasteChord::ShiftInsert;
    return isAmong(terminals, windowClass) ? PasteChord::ControlShiftV : PasteChord::ControlV;
}

} // namespace kestrova
