#include "KestrovaCore/FoldedText.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

#include <random>

namespace kestrova {
namespace {

/// Computes every derived value of a shelf from its fields, the plain way, and remembers nothing.
class PlainShelf {
public:
    explicit PlainShelf(const ShelfPanelView& view) : m_view(view) {}

    ShelfPanelView::Items lensItems() const {
        ShelfPanelView::Items kept;
        for (const auto& item : m_view.items())
            if (isInLens(*item))
                kept.push_back(item);
        return kept;
    }
    ShelfPanelView::Items filteredItems() const {
        ShelfPanelView::Items kept;
        for (const auto& item : lensItems())
            if (isOfType(*item) && isFound(*item))
                kept.push_back(item);
        return kept;
    }
    std::vector<ClipboardItemType> availableTypes() const {
        std::vector<ClipboardItemType> types;
        for (const auto type : {ClipboardItemType::text, ClipboardItemType::url, ClipboardItemType::image,
                                ClipboardItemType::file, ClipboardItemType::color})
            if (std::ranges::any_of(lensItems(), [&](const auto& item) {
                    return item->type() == type ||
                           (type == ClipboardItemType::text && item->type() == ClipboardItemType::rtf);
                }))
                types.push_back(type);
        return types;
    }
    std::optional<std::size_t> index(std::optional<ItemID> id) const {
        const auto items = filteredItems();
        for (std::size_t i = 0; i < items.size(); ++i)
            if (id == items[i]->id())
                return i;
        return std::nullopt;
    }
    std::shared_ptr<ClipboardItem> currentItem() const {
        const auto items = filteredItems();
        for (const auto& id : {m_view._selection, m_view._hoveredItem})
            if (const auto place = index(id))
                return items[*place];
        return items.empty() ? nullptr : items.front();
    }

private:
    bool isInLens(const ClipboardItem& item) const {
        const auto& lens = m_view._collectionFilter;
        if (lens == CollectionFilter::pinned())
            return item.pinned();
        if (lens == CollectionFilter::screenshots())
            return item.source() == ItemSource::screenshot;
        if (lens.kind() == CollectionFilter::Kind::collection) {
            const auto collections = item.collections();
            return collections && std::ranges::find(*collections, lens.collectionID(), &KovaCollection::id) !=
                                      collections->end();
        }
        return true;
    }
    bool isOfType(const ClipboardItem& item) const {
        const auto& filter = m_view._typeFilter;
        return !filter || item.type() == *filter ||
               (*filter == ClipboardItemType::text && item.type() == ClipboardItemType::rtf);
    }
    bool isFound(const ClipboardItem& item) const {
        if (m_view._query.isEmpty())
            return true;
        const SearchTerm term(m_view._query);
        return term.isIn(foldedForSearch(item.content())) ||
               (item.ocrText() && term.isIn(foldedForSearch(*item.ocrText())));
    }

    const ShelfPanelView& m_view;
};

class ShelfPropertyTest : public ShelfFixture {
protected:
    using Random = std::mt19937;

    std::size_t below(std::size_t count) { return random() % count; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    /// Letters that differ in case, accent and final consonant only, so that queries nearly match.
    QString letters(std::size_t most) {
        static const QStringList alphabet{
            u"a"_qs,      u"A"_qs,      u"\u00e1"_qs, u"\u0301"_qs, u"b"_qs, u"\ud558"_qs, u"\ud55c"_qs,
            u"\u1112"_qs, u"\u1161"_qs, u"\u11ab"_qs, u"\u00df"_qs, u"s"_qs, u" "_qs};
        QString result;
        for (auto count = below(most + 1); count > 0; --count)
            result += alphabet[static_cast<qsizetype>(below(static_cast<std::size_t>(alphabet.size())))];
        return result;
    }
    void addRandom() {
        add(letters(6), {.type = allClipboardItemTypes.at(below(allClipboardItemTypes.size())),
                         .pinned = oneIn(3),
                         .source = oneIn(3) ? ItemSource::screenshot : ItemSource::clipboard,
                         .ocrText = oneIn(3) ? std::optional{letters(4)} : std::nullopt,
                         // Many of one moment.
                         .seconds = static_cast<int>(below(5))});
    }
    std::shared_ptr<ClipboardItem> anyItem() {
        return view.items().empty() ? nullptr : view.items()[below(view.items().size())];
    }

    void step() {
        const auto item = anyItem();
        const auto collection = view.allCollections().empty()
                                    ? nullptr
                                    : view.allCollections()[below(view.allCollections().size())];
        switch (below(16)) {
        case 0:
        case 1:
            addRandom();
            break;
        case 2:
            if (item)
                deleteElsewhere(item->id());
            break;
        case 3:
            if (item)
                act([&] { view.deleteItem(*item); });
            break;
        case 4:
            act([&] { view.undoLastDelete(); });
            break;
        case 5:
            if (item)
                act([&] { view.togglePin(*item); });
            break;
        case 6:
            if (item)
                act([&] { view.saveEdit(*item, letters(6)); });
            break;
        case 7:
            if (view.allCollections().size() < 4)
                addCollection(letters(3));
            else
                deleteElsewhere(collection->id());
            break;
        case 8:
            if (item && collection)
                act([&] { view.toggleCollection(*item, collection); });
            break;
        case 9:
            act([&] { view.selectSidebarRow(static_cast<std::ptrdiff_t>(below(8)) - 1); });
            break;
        case 10:
            act([&] { view.selectTypeChip(static_cast<std::ptrdiff_t>(below(7))); });
            break;
        case 11:
        case 12:
            type(view._query + letters(1));
            break;
        case 13:
            type(oneIn(2) ? view._query.chopped(std::min<qsizetype>(1, view._query.size())) : letters(2));
            break;
        case 14:
            act([&] { view.moveSelection(static_cast<std::ptrdiff_t>(below(7)) - 3); });
            break;
        default:
            act([&] {
                view._hoveredItem = item ? std::optional{item->id()} : std::nullopt;
                view._sidebarVisible = !oneIn(4);
            });
            break;
        }
    }
    void expectFresh() {
        const PlainShelf plain(view);
        ASSERT_EQ(view.lensItems(), plain.lensItems());
        ASSERT_EQ(view.filteredItems(), plain.filteredItems());
        ASSERT_EQ(view.availableTypes(), plain.availableTypes());
        ASSERT_EQ(view.currentItem(), plain.currentItem());
        for (const auto& item : view.items())
            ASSERT_EQ(view.indexInFilteredItems(item->id()), plain.index(item->id()));
        ASSERT_EQ(view.indexInFilteredItems(view._selection), plain.index(view._selection));
    }

    Random random;
};

TEST_F(ShelfPropertyTest, WhatIsRememberedIsWhatAFreshComputationGives) {
    constexpr int runs = 8;
    constexpr int steps = 150;
    for (unsigned seed = 1; seed <= runs; ++seed) {
        random.seed(seed);
        SCOPED_TRACE(seed);
        for (int i = 0; i < steps; ++i) {
            SCOPED_TRACE(i);
            step();
            expectFresh();
            if (HasFatalFailure())
                return;
        }
    }
}

TEST_F(ShelfPropertyTest, WithinAHandlerEveryReadIsFreshToo) {
    random.seed(7);
    for (int i = 0; i < 20; ++i)
        addRandom();
    act([&] {
        for (int i = 0; i < 100 && !HasFatalFailure(); ++i) {
            step();
            expectFresh();
        }
    });
}

} // namespace
} // namespace kestrova
