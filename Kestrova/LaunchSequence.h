#pragma once

#include <array>

namespace kestrova {

/// The steps of a launch. Their order is settled: polling begins before the shelf exists, and what a step
/// joins was made by one before it.
enum class LaunchStep {
    statusItem,
    clipboardMonitor,
    shelfPanel,
    capture,
    hotkeys,
    hud,
    linkPreviewWarmUp,
    updater,
    diagnostics,
    launchAtLoginMigration,
    onboarding,
};

inline constexpr std::array launchSequence{
    LaunchStep::statusItem,        LaunchStep::clipboardMonitor,
    LaunchStep::shelfPanel,        LaunchStep::capture,
    LaunchStep::hotkeys,           LaunchStep::hud,
    LaunchStep::linkPreviewWarmUp, LaunchStep::updater,
    LaunchStep::diagnostics,       LaunchStep::launchAtLoginMigration,
    LaunchStep::onboarding,
};

} // namespace kestrova
