#pragma once

#include <QCoroTask>
#include <QUrl>

namespace kestrova {

/// Titles and pictures of web pages, kept on disk. Main thread only.
class LinkPreviewCache {
public:
    virtual ~LinkPreviewCache() = default;
    /// Fetches what the page at `url` says of itself, unless it is known.
    virtual QCoro::Task<> fetch(QUrl url) = 0;
};

/// Stands where links are shown plain: nothing is asked of the network.
class NoLinkPreviews final : public LinkPreviewCache {
public:
    QCoro::Task<> fetch(QUrl) override { co_return; }
};

} // namespace kestrova
