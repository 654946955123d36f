#pragma once

#include "Platform/x11/KeyModifiers.h"

#include <cstdint>
#include <optional>

class QWidget;

namespace kestrova {

/// What decides about some of a text control's keys.
struct TextControlState {
    bool hasSelection = false;
    bool canUndo = false;
};

/// Absent if the widget is no control for text; null is none. One that is not the toolkit's own counts if it
/// answers an input method where its caret is; its property `TextControl::undoAvailable` tells of undo.
std::optional<TextControlState> textControlState(const QWidget* widget);

/// Whether the key with the Control key belongs to the text control in focus, as people expect at this
/// desktop. All others, and all with Super or Alt, are the program's. `state` is the event's X state.
bool belongsToTextControl(std::uint16_t virtualKey, std::uint16_t state, const ModifierMap& map,
                          const TextControlState& control);

} // namespace kestrova
