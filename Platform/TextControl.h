#pragma once

namespace kestrova::TextControl {

/// The property, true or false, by which a control for text that is not the toolkit's own tells whether there
/// is something to undo. Some keys are such a control's only then.
inline constexpr auto undoAvailable = "undoAvailable";

} // namespace kestrova::TextControl
