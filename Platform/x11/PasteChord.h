#pragma once

namespace kestrova {

struct WindowClass;

/// What an application pastes with.
enum class PasteChord {
    ControlV,
    /// Terminals, to whose programs Ctrl+V belongs.
    ControlShiftV,
    /// Terminals of the old kind; what they paste is the primary selection.
    ShiftInsert
};

PasteChord pasteChordOf(const WindowClass& windowClass);

} // namespace kestrova
