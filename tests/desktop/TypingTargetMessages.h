#pragma once

#include <cstdint>

namespace kestrova::test {

/// What a test asks of the typing target: the first number of a client message to one of its windows.
enum class TypingTargetMessage : std::uint32_t {
    HoldKeyboard,
    LetKeyboardGo,
    /// The second number is a window: whenever that one is active, the target's first window takes over.
    StealFocusFrom,
};

namespace typingTargetMessages {
/// The type of these messages.
inline constexpr const char* kType = "KESTROVA_TEST_MESSAGE";
} // namespace typingTargetMessages

} // namespace kestrova::test
