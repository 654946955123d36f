#pragma once

#include <QCoroTask>
#include <QImage>
#include <QString>
#include <QUrl>

#include <optional>

namespace kestrova {

/// Titles and pictures of web pages, kept on disk. Main thread only.
class LinkPreviewCache {
public:
    /// What a page says of itself. All of it may be absent, as when the page could not be read; pictures are
    /// null then.
    struct Preview {
        std::optional<QString> title;
        std::optional<QString> siteName;
        QImage image;
        QImage favicon;
    };

    virtual ~LinkPreviewCache() = default;
    /// What is known of the page now; absent if it was never fetched. Asks nothing of the network or the
    /// disk.
    virtual std::optional<Preview> cachedPreview(const QUrl& url) const = 0;
    /// Fetches what the page at `url` says of itself, unless it is known.
    virtual QCoro::Task<> fetch(QUrl url) = 0;
};

/// Stands where links are shown plain: nothing is asked of the network.
class NoLinkPreviews final : public LinkPreviewCache {
public:
    std::optional<Preview> cachedPreview(const QUrl&) const override { return std::nullopt; }
    QCoro::Task<> fetch(QUrl) override { co_return; }
};

} // namespace kestrova
