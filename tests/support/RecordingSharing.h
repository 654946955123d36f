#pragma once

#include "Platform/Sharing.h"

#include <utility>
#include <vector>

namespace kestrova {

/// A desktop with the ways to share that a test gives it. It keeps what is handed over.
class RecordingSharing final : public Sharing {
public:
    std::vector<ShareTarget> targets(const SharedContent& content) override {
        asked.push_back(content);
        return all;
    }
    void share(const SharedContent& content, const ShareTarget& target) override {
        shared.emplace_back(content, target.identifier);
    }

    std::vector<ShareTarget> all;
    std::vector<SharedContent> asked;
    std::vector<std::pair<SharedContent, QString>> shared;
};

} // namespace kestrova
