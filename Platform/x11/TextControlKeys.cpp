#include "Platform/x11/TextControlKeys.h"

#include "Platform/KeyEvent.h"
#include "Platform/TextControl.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

enum class Claim { Always, WithSelection, WithUndo };

struct ClaimedKey {
    std::uint16_t virtualKey;
    Claim claim;
};

namespace Position {
constexpr std::uint16_t a = 0;
constexpr std::uint16_t x = 7;
constexpr std::uint16_t deleteForward = 117;
} // namespace Position

constexpr std::array claimedKeys{ClaimedKey{VirtualKey::c, Claim::WithSelection},
                                 ClaimedKey{VirtualKey::z, Claim::WithUndo},
                                 ClaimedKey{Position::a, Claim::Always},
                                 ClaimedKey{VirtualKey::v, Claim::Always},
                                 ClaimedKey{Position::x, Claim::Always},
                                 ClaimedKey{VirtualKey::deleteKey, Claim::Always},
                                 ClaimedKey{Position::deleteForward, Claim::Always},
                                 ClaimedKey{VirtualKey::leftArrow, Claim::Always},
                                 ClaimedKey{VirtualKey::rightArrow, Claim::Always},
                                 ClaimedKey{VirtualKey::downArrow, Claim::Always},
                                 ClaimedKey{VirtualKey::upArrow, Claim::Always}};

template<typename Edit>
std::optional<TextControlState> documentState(const QWidget* widget) {
    const auto* const edit = qobject_cast<const Edit*>(widget);
    if (!edit)
        return {};
    return TextControlState{edit->textCursor().hasSelection(), edit->document()->isUndoAvailable()};
}

/// Controls that are not the toolkit's own: they tell input methods where their caret is, and by a property
/// whether there is something to undo, for which input methods have no word.
std::optional<TextControlState> otherControlState(const QWidget& widget) {
    const auto caret = widget.inputMethodQuery(Qt::ImCursorPosition);
    if (!caret.isValid())
        return {};
    const bool hasSelection = !widget.inputMethodQuery(Qt::ImCurrentSelection).toString().isEmpty();
    return TextControlState{hasSelection, widget.property(TextControl::undoAvailable).toBool()};
}

} // namespace

std::optional<TextControlState> textControlState(const QWidget* widget) {
    if (const auto* const line = qobject_cast<const QLineEdit*>(widget))
        return TextControlState{line->hasSelectedText(), line->isUndoAvailable()};
    const auto plain = documentState<QPlainTextEdit>(widget);
    if (plain)
        return plain;
    const auto rich = documentState<QTextEdit>(widget);
    return rich || !widget ? rich : otherControlState(*widget);
}

bool belongsToTextControl(std::uint16_t virtualKey, std::uint16_t state, const ModifierMap& map,
                          const TextControlState& control) {
    const bool isControlChord = (state & XCB_MOD_MASK_CONTROL) && !(state & (map.super | map.alt));
    const auto found = std::ranges::find(claimedKeys, virtualKey, &ClaimedKey::virtualKey);
    if (!isControlChord || found == claimedKeys.end())
        return false;
    return found->claim == Claim::Always || (found->claim == Claim::WithSelection && control.hasSelection) ||
           (found->claim == Claim::WithUndo && control.canUndo);
}

} // namespace kestrova
