#pragma once

#include "Kestrova/capture/HUD.h"

#include <memory>
#include <utility>
#include <vector>

namespace kestrova {

/// Keeps what the toast was asked to tell of.
class RecordingHUD final : public HUD {
public:
    void show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) override {
        shown.emplace_back(event, item);
    }

    std::vector<std::pair<HUDEvent, std::shared_ptr<ClipboardItem>>> shown;
};

} // namespace kestrova
