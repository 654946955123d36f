#pragma once

#include "Platform/WindowManagement.h"

#include <QRect>
#include <QRegion>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

/// A screen as a test sets it, which remembers what was asked of it.
class FakeWindowManagement final : public WindowManagement {
public:
    bool isCompositing() const override { return compositing; }
    bool isScreenCovered() const override { return covered; }
    /// Of one observer at a time.
    std::unique_ptr<CompositingObserver> observeCompositing(std::function<void()> onDidChange) override {
        tellOfChange = std::move(onDidChange);
        return std::make_unique<Observer>(*this);
    }
    void standApart(std::uint64_t window) override { apart.push_back(window); }
    void limitPresses(std::uint64_t window, const QRegion& pixels) override {
        limitedWindow = window;
        presses = pixels;
    }
    void cutOff(std::uint64_t, const QRect& pixels) override { cut = pixels; }
    void handOverKeyboard(std::uint64_t window) override {
        if (onHandOver)
            onHandOver(window);
    }

    bool compositing = true;
    bool covered = false;
    std::function<void()> tellOfChange;
    std::vector<std::uint64_t> apart;
    std::uint64_t limitedWindow = 0;
    QRegion presses;
    std::optional<QRect> cut;
    std::function<void(std::uint64_t)> onHandOver;

private:
    struct Observer final : CompositingObserver {
        explicit Observer(FakeWindowManagement& told) : owner(told) {}
        Observer(const Observer&) = delete;
        Observer& operator=(const Observer&) = delete;
        ~Observer() override { owner.tellOfChange = nullptr; }
        FakeWindowManagement& owner;
    };
};

} // namespace kestrova
