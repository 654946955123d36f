#pragma once

#include "Kestrova/shelf/ShelfPanel.h"

#include <string>
#include <vector>

namespace kestrova {

/// A panel without a window. It logs what is asked of it by name, in order.
class FakeShelfPanel final : public ShelfPanel {
public:
    bool isVisible() const override { return visible; }
    std::uint64_t windowNumber() const override { return number; }

    void setContent(ShelfPanelView& view) override {
        calls.emplace_back("setContent");
        content = &view;
    }
    ScreenRect frame() const override { return place; }
    void setFrame(const ScreenRect& newFrame) override {
        calls.emplace_back("setFrame");
        place = newFrame;
    }
    void animateFrame(const ScreenRect& newFrame, Duration duration, AnimationTiming timing) override {
        calls.emplace_back("animateFrame");
        place = newFrame;
        lastDuration = duration;
        lastTiming = timing;
    }
    void setAlpha(double newAlpha) override {
        calls.emplace_back("setAlpha");
        alpha = newAlpha;
    }
    void animateAlpha(double newAlpha, Duration duration, AnimationTiming timing) override {
        calls.emplace_back("animateAlpha");
        alpha = newAlpha;
        lastDuration = duration;
        lastTiming = timing;
    }
    void orderFrontRegardless() override {
        calls.emplace_back("orderFrontRegardless");
        visible = true;
    }
    void orderOut() override {
        calls.emplace_back("orderOut");
        visible = false;
    }
    void setIgnoresMouseEvents(bool ignores) override {
        calls.emplace_back("setIgnoresMouseEvents");
        ignoresMouseEvents = ignores;
    }
    void endEditing() override { calls.emplace_back("endEditing"); }
    void pickShareTarget(const std::vector<ShareTarget>& targets,
                         std::function<void(const ShareTarget&)> done) override {
        calls.emplace_back("pickShareTarget");
        offeredTargets = targets;
        onSharePicked = std::move(done);
    }

    std::vector<std::string> calls;
    ShelfPanelView* content = nullptr;
    bool visible = false;
    std::uint64_t number = 40;
    ScreenRect place;
    double alpha = 1;
    bool ignoresMouseEvents = false;
    Duration lastDuration{};
    AnimationTiming lastTiming = AnimationTiming::easeIn;
    std::vector<ShareTarget> offeredTargets;
    std::function<void(const ShareTarget&)> onSharePicked;
};

} // namespace kestrova
