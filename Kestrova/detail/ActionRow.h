#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace kestrova {

/// A line of the card: something that can be done.
struct ActionRow {
    /// The name of a symbol.
    QString icon;
    QString label;
    /// The key that does the same, as the line shows it.
    std::optional<QString> shortcut = {};
    bool destructive = false;
    bool disabled = false;
    std::function<void()> invoke = {};
};

} // namespace kestrova
