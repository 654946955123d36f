#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace kestrova {

/// What an entry of the status item's menu does.
enum class StatusMenuAction {
    togglePanel,
    captureArea,
    captureFullScreen,
    captureWindow,
    checkForUpdates,
    openChangelog,
    toggleLaunchAtLogin,
    openSettings,
    terminate,
};

/// A picture before a title, which says something that the title does not.
struct StatusMenuImage {
    /// The name of the symbol.
    QString symbol;
    /// For those who do not see it.
    QString description;

    bool operator==(const StatusMenuImage&) const = default;
};

/// One line of the menu as it stands there. No entry has a check mark.
struct StatusMenuEntry {
    /// Empty on a separator.
    QString title;
    /// Absent on a separator and on a heading.
    std::optional<StatusMenuAction> action;
    /// The key that, with Command, chooses the entry while the menu is open. Empty if there is none.
    QString keyEquivalent;
    bool isEnabled = false;
    std::optional<StatusMenuImage> image;

    bool isSeparator() const { return title.isEmpty(); }
    bool operator==(const StatusMenuEntry&) const = default;
};

using StatusMenu = std::vector<StatusMenuEntry>;

/// The parts of the program that entries need; the entries of one that is not there are disabled.
struct StatusMenuCapabilities {
    bool updateCheck = false;
    bool changelog = false;
    bool launchAtLogin = false;
    bool settings = false;
};

/// The menu before anything is known of the state of its entries.
StatusMenu statusMenu(const StatusMenuCapabilities& capabilities);
/// Brings the entries that show a state up to it; to be called each time before the menu opens.
void menuNeedsUpdate(StatusMenu& menu, bool launchesAtLogin);

} // namespace kestrova
