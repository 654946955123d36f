#include "Kestrova/shelf/widgets/DropDestination.h"

#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ItemDragData.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include <utility>

namespace kestrova {
namespace {

/// What can be read of them: one payload or none.
template<typename Payload>
std::vector<Payload> payloadsOf(const QDropEvent& event) {
    const auto payload = Payload::decoded(event.mimeData()->data(Payload::contentType()));
    return payload ? std::vector{*payload} : std::vector<Payload>();
}

std::vector<ItemDragPayload> itemsOf(const QDropEvent& event) {
    // A drag of our own comes with the data that it began with. To encode and decode a long text would be
    // felt.
    if (const auto* const own = dynamic_cast<const ItemDragData*>(event.mimeData()))
        return {own->payload()};
    return payloadsOf<ItemDragPayload>(event);
}

QList<QUrl> addressesOf(const QDropEvent& event) {
    auto urls = event.mimeData()->urls();
    urls.removeIf([](const QUrl& url) { return url.isEmpty() || !url.isValid(); });
    return urls;
}

} // namespace

DropDestination::Kind DropDestination::kindOf(const QDropEvent& event) const {
    const auto& data = *event.mimeData();
    // There is one pointer, so while a drag of our own is under way there is no other.
    if (!m_view.drags().isUnderWay())
        return data.hasUrls() ? Kind::addresses : Kind::none;
    if (data.hasFormat(ItemDragPayload::contentType()))
        return Kind::items;
    return data.hasFormat(CollectionReorderPayload::contentType()) ? Kind::collection : Kind::none;
}

bool DropDestination::isCovered() const {
    return m_view._route || m_view._collectionSheetMode;
}

bool DropDestination::isTakenAt(QPoint place) const {
    if (isCovered())
        return false;
    switch (m_kind) {
    case Kind::none:
        return false;
    case Kind::items:
        return m_view.dropTargetAt(place).has_value();
    case Kind::collection:
        return true;
    case Kind::addresses:
        return isOverLists(place);
    }
    Q_UNREACHABLE();
}

void DropDestination::answer(QDropEvent& event, bool isTaken) const {
    if (!isTaken || !event.possibleActions().testFlag(Qt::CopyAction)) {
        event.ignore();
        return;
    }
    // Whatever else was proposed: a file that is moved here would be gone from where it was.
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

void DropDestination::enter(QDragEnterEvent& event) {
    m_kind = kindOf(event);
    m_view.perform([this] {
        if (m_kind == Kind::items)
            m_view.drags().itemsEntered();
        else if (m_kind == Kind::collection)
            m_view.drags().collectionEntered();
    });
    // Where it is taken is told move by move.
    answer(event, m_kind != Kind::none);
}

void DropDestination::move(QDragMoveEvent& event) {
    const auto place = event.position().toPoint();
    const bool isForRows = m_kind == Kind::items || m_kind == Kind::collection;
    const bool isScrolling = isForRows && onHover(isCovered() ? nullptr : &place);
    // Rows go on coming to a pointer that rests and asks no more. The drop decides.
    answer(event, isScrolling || isTakenAt(place));
}

void DropDestination::leave() {
    onHover(nullptr);
    const auto kind = std::exchange(m_kind, Kind::none);
    m_view.perform([&] {
        if (kind == Kind::items)
            m_view.drags().itemsLeft();
        else if (kind == Kind::collection)
            m_view.drags().collectionLeft();
    });
}

void DropDestination::drop(QDropEvent& event) {
    answer(event, isTakenAt(event.position().toPoint()) && take(event));
    leave();
}

bool DropDestination::take(const QDropEvent& event) {
    bool isTaken = false;
    m_view.perform([&] {
        switch (m_kind) {
        case Kind::none:
            break;
        case Kind::items:
            isTaken = m_view.drags().dropItems(itemsOf(event), event.position());
            break;
        case Kind::collection:
            isTaken =
                m_view.drags().dropCollections(payloadsOf<CollectionReorderPayload>(event), event.position());
            break;
        case Kind::addresses:
            const auto addresses = addressesOf(event);
            m_view.dropURLs(addresses);
            isTaken = !addresses.isEmpty();
            break;
        }
    });
    return isTaken;
}

} // namespace kestrova
