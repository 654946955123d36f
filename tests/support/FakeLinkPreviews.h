#pragma once

#include "Kestrova/services/LinkPreviewCache.h"
#include "Platform/MainQueue.h"

#include <QList>

#include <chrono>
#include <map>

namespace kestrova {

/// Previews that a test has laid out. Each fetch takes a moment.
class FakeLinkPreviews final : public LinkPreviewCache {
public:
    /// It outlives the object.
    explicit FakeLinkPreviews(MainQueue& mainQueue) : m_mainQueue(mainQueue) {}

    std::optional<Preview> cachedPreview(const QUrl& url) const override {
        const auto found = known.find(url);
        return found == known.end() ? std::nullopt : std::optional(found->second);
    }
    QCoro::Task<> fetch(QUrl url) override {
        fetched.append(url);
        co_await m_mainQueue.delay(fetchTime);
        if (const auto found = pages.find(url); found != pages.end())
            known[url] = found->second;
    }

    static constexpr std::chrono::milliseconds fetchTime{10};

    /// What is in the cache.
    std::map<QUrl, Preview> known;
    /// What a fetch brings.
    std::map<QUrl, Preview> pages;
    QList<QUrl> fetched;

private:
    MainQueue& m_mainQueue;
};

} // namespace kestrova
