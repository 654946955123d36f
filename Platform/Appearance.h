#pragma once

#include <functional>
#include <optional>

namespace kestrova {

/// How the desktop wants programs to look. Main thread only.
class Appearance {
public:
    enum class ColorScheme { light, dark };

    virtual ~Appearance() = default;

    /// What the person has chosen for the whole desktop; absent if the desktop does not say.
    virtual std::optional<ColorScheme> colorScheme() const = 0;
    /// The desktop has another one now.
    std::function<void()> onChange;
};

} // namespace kestrova
