#pragma once

#include "Platform/KeyboardLayout.h"

#include <map>

namespace kestrova {

/// A layout with the keys that a test gives it.
class FakeKeyboardLayout final : public KeyboardLayout {
public:
    std::optional<QString> text(std::uint16_t keyCode) const override {
        const auto found = keys.find(keyCode);
        return found == keys.end() ? std::nullopt : std::optional{found->second};
    }

    std::map<std::uint16_t, QString> keys{
        {9, QStringLiteral("v")},  {20, QStringLiteral("3")}, {21, QStringLiteral("4")},
        {22, QStringLiteral("6")}, {40, QStringLiteral("k")},
    };
};

} // namespace kestrova
