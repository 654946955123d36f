#include "Platform/x11/PasteChord.h"

#include "Platform/x11/DesktopEntries.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(PasteChordTest, EachProgramGetsWhatItPastesWith) {
    struct Row {
        QString instance;
        QString name;
        PasteChord chord;
    };
    using enum PasteChord;
    for (const auto& row :
         std::vector<Row>{{u"mousepad"_s, u"Mousepad"_s, ControlV},
                          {u"Navigator"_s, u"firefox"_s, ControlV},
                          {u""_s, u""_s, ControlV},
                          // Names that merely contain one of a terminal's
                          {u"xterminator"_s, u"Xterminator"_s, ControlV},
                          {u"stellarium"_s, u"stellarium"_s, ControlV},
                          {u"code"_s, u"Code"_s, ControlV},
                          {u"gnome-terminal-server"_s, u"Gnome-terminal"_s, ControlShiftV},
                          {u"xfce4-terminal"_s, u"Xfce4-terminal"_s, ControlShiftV},
                          {u"konsole"_s, u"konsole"_s, ControlShiftV},
                          {u"kitty"_s, u"kitty"_s, ControlShiftV},
                          {u"Alacritty"_s, u"Alacritty"_s, ControlShiftV},
                          {u"st-256color"_s, u"st-256color"_s, ControlShiftV},
                          {u"lxterminal"_s, u"Lxterminal"_s, ControlShiftV},
                          {u"tilix"_s, u"Tilix"_s, ControlShiftV},
                          {u"terminator"_s, u"Terminator"_s, ControlShiftV},
                          {u"qterminal"_s, u"qterminal"_s, ControlShiftV},
                          {u"org.wezfurlong.wezterm"_s, u"org.wezfurlong.wezterm"_s, ControlShiftV},
                          {u"xterm"_s, u"kitty"_s, ControlShiftV},
                          {u"xterm"_s, u"XTerm"_s, ShiftInsert},
                          {u"my-log"_s, u"XTerm"_s, ShiftInsert},
                          {u"uxterm"_s, u"UXTerm"_s, ShiftInsert},
                          {u"urxvt"_s, u"URxvt"_s, ShiftInsert},
                          {u"rxvt"_s, u"Rxvt"_s, ShiftInsert},
                          {u"mlterm"_s, u"mlterm"_s, ShiftInsert},
                          {u"aterm"_s, u"Aterm"_s, ShiftInsert},
                          {u"Eterm"_s, u"Eterm"_s, ShiftInsert}})
        EXPECT_EQ(pasteChordOf({.instance = row.instance, .name = row.name}), row.chord)
            << row.instance.toStdString() << " " << row.name.toStdString();
}

} // namespace
} // namespace kestrova
