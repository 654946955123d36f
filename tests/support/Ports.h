#pragma once

#include "Platform/MachineInfo.h"
#include "Platform/SingleInstance.h"
#include "Platform/Workspace.h"

#include <cstdint>
#include <optional>

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
    bool isTerminated(const RunningApplication&) const override { return false; }
    void activate(const RunningApplication&) override {}
    void activateOwnWindow(std::uint64_t) override {}
    void open(const QUrl&) override {}
    void reveal(const QUrl&) override {}

    std::optional<RunningApplication> frontmost;
};

/// Takes commands straight from a test.
class FakeSingleInstance final : public SingleInstance {
public:
    bool claim() override { return true; }
    void serve() override { serves = true; }

    bool serves = false;
};

} // namespace kestrova
