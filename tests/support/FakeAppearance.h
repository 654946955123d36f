#pragma once

#include "Platform/Appearance.h"

namespace kestrova {

/// A desktop that says nothing of its looks until a test makes it.
class FakeAppearance final : public Appearance {
public:
    std::optional<ColorScheme> colorScheme() const override { return m_colorScheme; }
    void change(std::optional<ColorScheme> colorScheme) {
        m_colorScheme = colorScheme;
        if (onChange)
            onChange();
    }

private:
    std::optional<ColorScheme> m_colorScheme;
};

} // namespace kestrova
