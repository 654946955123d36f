#pragma once

#include "Kestrova/capture/HUDController.h"

#include <memory>
#include <utility>
#include <vector>

namespace kestrova {

/// Keeps what the toast was asked to tell of.
class RecordingHUD final : public HUDController {
public:
    void show(HUDEvent event, const std::shared_ptr<ClipboardItem>& item) override {
        shown.emplace_back(event, item);
    }

    std::vector<std::pair<HUDEvent, std::shared_ptr<ClipboardItem>>> shown;
};

} // namespace kestrova
