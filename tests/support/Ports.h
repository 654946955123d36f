#pragma once

#include "Platform/MachineInfo.h"
#include "Platform/SingleInstance.h"
#include "Platform/Workspace.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace kestrova {

class FakeMachineInfo final : public MachineInfo {
public:
    QString bundleIdentifier() const override { return QStringLiteral("com.brelvane.Kestrova"); }
    QString shortVersionString() const override { return QStringLiteral("1.2.3"); }
};

/// A desktop on which nothing happens.
class FakeWorkspace : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
    std::unique_ptr<ActivationObserver> observeActivations(std::function<void()> onDidActivate) override {
        auto observer = std::make_unique<Observer>();
        observer->onDidActivate = std::move(onDidActivate);
        observer->all = activationObservers;
        activationObservers->insert(observer.get());
        return observer;
    }
    QIcon icon(const RunningApplication&) const override { return {}; }
    std::optional<ApplicationDescription> describe(const QString& bundleIdentifier) const override {
        const auto found = installed.find(bundleIdentifier);
        return found == installed.end() ? std::nullopt : std::optional(found->second);
    }
    void fileIcon(const QString& path, std::function<void(const QIcon&)> done) override {
        iconRequests.emplace_back(path, std::move(done));
    }
    bool isTerminated(const RunningApplication&) const override { return false; }
    void activate(const RunningApplication&) override {}
    void activateOwnWindow(std::uint64_t) override {}
    void open(const QUrl&) override {}
    void reveal(const QUrl&) override {}

    /// Another application comes to the front.
    void activateAnother() const {
        const auto observers = *activationObservers;
        for (const auto* const observer : observers)
            observer->onDidActivate();
    }

    struct Observer final : ActivationObserver {
        Observer() = default;
        ~Observer() override { all->erase(this); }
        std::function<void()> onDidActivate;
        // Shared: a holder may outlive the fake.
        std::shared_ptr<std::set<const Observer*>> all;
    };
    std::shared_ptr<std::set<const Observer*>> activationObservers =
        std::make_shared<std::set<const Observer*>>();
    std::optional<RunningApplication> frontmost;
    /// By identifier.
    std::map<QString, ApplicationDescription> installed;
    /// Icons of files that have been asked for, and who waits for them.
    std::vector<std::pair<QString, std::function<void(const QIcon&)>>> iconRequests;
};

/// Takes commands straight from a test.
class FakeSingleInstance final : public SingleInstance {
public:
    bool claim() override { return true; }
    void serve() override { serves = true; }

    bool serves = false;
};

} // namespace kestrova
