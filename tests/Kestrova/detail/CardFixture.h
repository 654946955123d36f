#pragma once

#include "Kestrova/detail/ItemActionsCard.h"
#include "KestrovaCore/CollectionMembership.h"
#include "Platform/KeyEvent.h"
#include "tests/support/FakeEventMonitors.h"
#include "tests/support/StoreFixture.h"

#include <QStringList>

#include <chrono>

namespace kestrova {

/// A card that tells by name what it was asked to do, with a clock that a test turns by hand.
class CardFixture : public StoreFixture {
protected:
    static constexpr std::uint64_t ownWindow = 40;

    std::shared_ptr<ClipboardItem> insert(const QString& content,
                                          ClipboardItemType type = ClipboardItemType::text) {
        const auto item = std::make_shared<ClipboardItem>(content, type, std::nullopt, moment(0), false,
                                                          ItemSource::clipboard);
        context.insert(item);
        return item;
    }
    std::vector<std::shared_ptr<KovaCollection>> insertCollections(const QStringList& names) {
        std::vector<std::shared_ptr<KovaCollection>> collections;
        for (const auto& name : names) {
            collections.push_back(
                std::make_shared<KovaCollection>(name, std::ssize(collections), std::nullopt, std::nullopt));
            context.insert(collections.back());
        }
        return collections;
    }

    /// Everything that is always there.
    ItemActions actionsOf(const std::shared_ptr<ClipboardItem>& item) {
        return {.item = item,
                .onPaste = doing(u"paste"),
                .onCopy = doing(u"copy"),
                .onPreview = doing(u"preview"),
                .onTogglePin = doing(u"toggle pin"),
                .onToggleCollection =
                    [this](const auto& collection) { done.append(u"toggle "_qs + collection->name()); },
                .onShare = doing(u"share"),
                .onOpenURL = [this](const QUrl& url) { done.append(u"open "_qs + url.toString()); },
                .onShowInFinder = [this](const QUrl& url) { done.append(u"show "_qs + url.toString()); },
                .onDelete = doing(u"delete"),
                .onCancel = doing(u"cancel")};
    }
    std::function<void()> doing(QStringView what) {
        return [this, what = what.toString()] { done.append(what); };
    }
    std::unique_ptr<ItemActionsCard> makeCard(ItemActions actions) {
        return std::make_unique<ItemActionsCard>(
            ItemActionsCard::Surroundings{
                .eventMonitors = monitors,
                .isOfTheWindow = [](const LocalEvent& event) { return event.window == ownWindow; },
                .now = [this] { return now; }},
            std::move(actions));
    }

    bool send(std::uint16_t keyCode, std::uint32_t flags = 0, bool isRepeat = false,
              std::uint64_t window = ownWindow) {
        return monitors.send({EventMask::keyDown, window, {keyCode, flags, {}, isRepeat}});
    }

    ModelContext context{*m_container};
    FakeEventMonitors monitors;
    ItemActionsCard::Instant now{std::chrono::hours(1)};
    QStringList done;
};

} // namespace kestrova
