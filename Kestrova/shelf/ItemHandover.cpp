#include "Kestrova/shelf/ItemHandover.h"

#include "Kestrova/clipboard/PasteService.h"
#include "Kestrova/shelf/ShelfPanel.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/Workspace.h"

#include <QFileInfo>

#include <utility>

namespace kestrova {
namespace {

/// An address that applications are registered for.
std::optional<QUrl> webAddress(const QString& text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
    return isWeb && !url.host().isEmpty() ? std::optional(url) : std::nullopt;
}

} // namespace

ItemHandover::ItemHandover(const Surroundings& surroundings, std::function<void()> onStepAside)
    : m_surroundings(surroundings), m_onStepAside(std::move(onStepAside)) {}

SharedContent ItemHandover::sharedContent(const ClipboardItem& item) {
    switch (item.type()) {
    case ClipboardItemType::image:
        if (item.hasImageData())
            return {.text = {}, .link = {}, .file = {}, .picture = [stored = item.storedImageData()] {
                        return stored.read();
                    }};
        break;
    case ClipboardItemType::file:
        if (const auto url = PasteService::fileURL(item);
            url && url->isLocalFile() && QFileInfo::exists(url->toLocalFile()))
            return {.text = {}, .link = {}, .file = url, .picture = {}};
        break;
    case ClipboardItemType::url:
        if (const auto url = webAddress(item.content()))
            return {.text = {}, .link = url, .file = {}, .picture = {}};
        break;
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
    case ClipboardItemType::color:
        break;
    }
    return {.text = item.content(), .link = {}, .file = {}, .picture = {}};
}

void ItemHandover::openFile(const ClipboardItem& item) const {
    if (const auto url = PasteService::fileURL(item))
        open(*url);
}

void ItemHandover::revealFile(const ClipboardItem& item) const {
    if (const auto url = PasteService::fileURL(item))
        reveal(*url);
}

void ItemHandover::open(const QUrl& url) const {
    m_surroundings.workspace.open(url);
    m_onStepAside();
}

void ItemHandover::reveal(const QUrl& file) const {
    m_surroundings.workspace.reveal(file);
    m_onStepAside();
}

void ItemHandover::share(const std::shared_ptr<ClipboardItem>& item) {
    m_share = m_surroundings.mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(), [this, item] {
        if (!item->isDeleted())
            pickTarget(*item);
    });
}

void ItemHandover::pickTarget(const ClipboardItem& item) const {
    const auto content = sharedContent(item);
    m_surroundings.panel.pickShareTarget(m_surroundings.sharing.targets(content),
                                         [this, content](const ShareTarget& target) {
                                             m_surroundings.sharing.share(content, target);
                                             m_onStepAside();
                                         });
}

} // namespace kestrova
