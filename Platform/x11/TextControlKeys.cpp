#include "Platform/x11/TextControlKeys.h"

#include "Platform/KeyEvent.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

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

} // namespace

std::optional<TextControlState> textControlState(const QWidget* widget) {
    if (const auto* const line = qobject_cast<const QLineEdit*>(widget))
        return TextControlState{line->hasSelectedText(), line->isUndoAvailable()};
    const auto plain = documentState<QPlainTextEdit>(widget);
    return plain ? plain : documentState<QTextEdit>(widget);
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
