#pragma once

#include "Platform/MachineInfo.h"
#include "Platform/SingleInstance.h"
#include "Platform/Workspace.h"

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace kestrova {

class FakeMachineInfo final : public MachineInfo {
public:
    QString bundleIdentifier() const override { return QStringLiteral("com.brelvane.Kestrova"); }
    QString shortVersionString() const override { return QStringLiteral("1.2.3"); }
};

class FakeWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
    QIcon icon(const RunningApplication&) const override { return {}; }
    bool isTerminated(const RunningApplication&) const override { return terminated; }
    void activate(const RunningApplication& application) override { activations.push_back(application); }
    void activateOwnWindow(std::uint64_t window) override { activations.push_back(window); }

    std::optional<RunningApplication> frontmost;
    bool terminated = false;
    /// Applications and own windows, in the order in which they were asked to come to the front.
    std::vector<std::variant<RunningApplication, std::uint64_t>> activations;
};

/// Takes commands straight from a test.
class FakeSingleInstance final : public SingleInstance {
public:
    bool claim() override { return true; }
    void serve() override { serves = true; }

    bool serves = false;
};

} // namespace kestrova
