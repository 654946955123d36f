#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/widgets/ItemDragData.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/Kestrova/shelf/widgets/DropFixture.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class OwnDropTest : public DropFixture {
protected:
    void SetUp() override {
        work = addCollection(u"work"_s);
        home = addCollection(u"home"_s);
        item = add(u"words"_s);
        DropFixture::SetUp();
    }
    std::unique_ptr<QMimeData> begin(const std::shared_ptr<ClipboardItem>& dragged) {
        std::unique_ptr<QMimeData> data;
        view.perform([&] { data = std::make_unique<ItemDragData>(view.drags().beginItem(*dragged)); });
        return data;
    }
    std::unique_ptr<QMimeData> begin(const std::shared_ptr<KovaCollection>& dragged) {
        auto data = std::make_unique<QMimeData>();
        view.perform([&] {
            data->setData(CollectionReorderPayload::contentType(),
                          view.drags().beginCollection(*dragged).encoded());
        });
        return data;
    }
    QRectF frameOf(const std::shared_ptr<KovaCollection>& collection) const {
        return view._tabFrames.at({collection->id()});
    }
    QPoint rowOf(const std::shared_ptr<KovaCollection>& collection) const {
        return frameOf(collection).center().toPoint();
    }
    void pointAt(QPoint place) { screens.mouse = QPointF(place.x(), panel.frame().height - place.y()); }
    void leave() {
        QDragLeaveEvent event;
        QApplication::sendEvent(&content(), &event);
    }
    std::vector<std::shared_ptr<KovaCollection>> addMoreThanFit() {
        std::vector<std::shared_ptr<KovaCollection>> all;
        for (int i = 0; i < 30; ++i)
            all.push_back(addCollection(QString::number(i)));
        return all;
    }
    QScrollArea& scrollArea() { return *part<Sidebar>().findChildren<QScrollArea*>().front(); }
    QScrollBar& scrollBar() { return *scrollArea().verticalScrollBar(); }
    /// Where rows can be seen.
    QRectF rows() { return QRectF(scrollArea().mapTo(&content(), QPoint()), scrollArea().size()); }
    void scrollBy(double distance) {
        scrollBar().setValue(scrollBar().value() + static_cast<int>(std::lround(distance)));
    }
    bool isScrolling() {
        return !QAbstractEventDispatcher::instance()->registeredTimers(&part<Sidebar>()).isEmpty();
    }
    QStringList order() const {
        QStringList names;
        for (const auto& collection : view.allCollections())
            names.append(collection->name());
        return names;
    }
    static std::size_t collectionsOf(const ClipboardItem& dropped) {
        const auto collections = dropped.collections();
        return collections ? collections->size() : 0;
    }

    std::shared_ptr<KovaCollection> work;
    std::shared_ptr<KovaCollection> home;
    std::shared_ptr<ClipboardItem> item;
};

/// Counts how often the payload or the text is asked for.
class CountedDragData final : public ItemDragData {
public:
    using ItemDragData::ItemDragData;
    mutable int reads = 0;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override {
        ++reads;
        return ItemDragData::retrieveData(format, type);
    }
};

TEST_F(OwnDropTest, TheTextOfAnItemIsNotEncodedForADropOnARow) {
    std::optional<CountedDragData> data;
    view.perform([&] { data.emplace(view.drags().beginItem(*item)); });
    EXPECT_EQ(drop(*data, rowOf(home), Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(collectionsOf(*item), 1u);
    EXPECT_EQ(data->reads, 0);
    EXPECT_EQ(data->text(), u"words");
    EXPECT_GT(data->reads, 0);
}

TEST_F(OwnDropTest, AnItemOnARowIsAddedToItsCollection) {
    const auto data = begin(item);
    pointAt(rowOf(home));
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    EXPECT_TRUE(view._hoverPollTimer);
    EXPECT_EQ(view._hoveredDropTarget, TabDropTarget{home->id()});
    EXPECT_TRUE(move(*data, rowOf(home), Qt::CopyAction));
    EXPECT_EQ(drop(*data, rowOf(home), Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(collectionsOf(*item), 1u);
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
}

TEST_F(OwnDropTest, AnItemBesideTheRowsIsRefused) {
    const auto data = begin(item);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    EXPECT_FALSE(move(*data, overLists, Qt::CopyAction));
    EXPECT_EQ(drop(*data, overLists, Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(collectionsOf(*item), 0u);
    EXPECT_EQ(view.items().size(), 1u);
}

TEST_F(OwnDropTest, AnItemOfAnAddressDoesNotBecomeARowAgain) {
    const auto address = add(u"https://example.org/"_s, ClipboardItemType::url);
    EXPECT_EQ(drop(*begin(address), overLists, Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(view.items().size(), 2u);
}

TEST_F(OwnDropTest, UnderADetailScreenAnItemIsRefused) {
    const auto data = begin(item);
    view.perform([&] { view.preview(item); });
    EXPECT_EQ(drop(*data, rowOf(work), Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(collectionsOf(*item), 0u);
}

TEST_F(OwnDropTest, TheHoverEndsWhenTheDragLeaves) {
    const auto data = begin(item);
    pointAt(rowOf(work));
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    ASSERT_EQ(view._hoveredDropTarget, TabDropTarget{work->id()});
    leave();
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
}

TEST_F(OwnDropTest, ACollectionIsPutBeforeAnother) {
    const auto data = begin(home);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    EXPECT_TRUE(view._dragReorderPollTimer);
    const auto place = view._tabFrames.at({work->id()}).topLeft().toPoint() + QPoint(50, 2);
    EXPECT_TRUE(move(*data, place, Qt::CopyAction));
    EXPECT_EQ(drop(*data, place, Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(order(), (QStringList{u"home"_s, u"work"_s}));
    EXPECT_FALSE(view._dragReorderPollTimer);
    EXPECT_EQ(view._draggingCollectionID, std::nullopt);
}

TEST_F(OwnDropTest, ARowThatIsCutOffAboveIsPassedAtItsMiddle) {
    const auto all = addMoreThanFit();
    const auto height = frameOf(all[5]).height();
    scrollBy(frameOf(all[5]).top() + height / 4 - rows().top());
    ASSERT_LT(frameOf(all[5]).top(), rows().top());
    // Below the middle of the row, but above that of what is seen of it.
    const QPoint place(100, static_cast<int>(frameOf(all[5]).center().y()) + 2);
    EXPECT_EQ(drop(*begin(all[10]), place, Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(order().mid(2 + 4, 4), (QStringList{u"4"_s, u"5"_s, u"10"_s, u"6"_s}));
}

TEST_F(OwnDropTest, ARowThatIsCutOffBelowIsPassedAtItsMiddle) {
    const auto all = addMoreThanFit();
    const auto height = frameOf(all[20]).height();
    scrollBy(frameOf(all[20]).bottom() - height / 4 - rows().bottom());
    ASSERT_GT(frameOf(all[20]).bottom(), rows().bottom());
    const QPoint place(100, static_cast<int>(frameOf(all[20]).center().y()) - 2);
    EXPECT_EQ(drop(*begin(all[10]), place, Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(order().mid(2 + 18, 3), (QStringList{u"19"_s, u"10"_s, u"20"_s}));
}

TEST_F(OwnDropTest, AnItemBesideWhatIsSeenOfARowIsRefused) {
    const auto all = addMoreThanFit();
    scrollBy(frameOf(all[5]).top() + 10 - rows().top());
    const auto above = QPointF(100, rows().top() - 2).toPoint();
    ASSERT_TRUE(frameOf(all[5]).contains(above));
    EXPECT_EQ(drop(*begin(item), above, Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(drop(*begin(item), above + QPoint(0, 4), Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(collectionsOf(*item), 1u);
}

TEST_F(OwnDropTest, AnItemOverTheSearchGoesPastItAndTextFromElsewhereDoesNot) {
    const auto isTakenOverTheSearch = [this](const QMimeData& data) {
        QDragEnterEvent event(field().rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&field(), &event);
        return event.isAccepted();
    };
    QMimeData words;
    words.setText(u"words"_s);
    EXPECT_TRUE(isTakenOverTheSearch(words));
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_TRUE(isTakenOverTheSearch(*begin(item)));
    // It was the shelf that took it.
    EXPECT_TRUE(view._hoverPollTimer);
}

TEST_F(OwnDropTest, NearTheirEndsTheRowsScroll) {
    addMoreThanFit();
    const auto data = begin(item);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    const auto before = rowOf(work).y();
    move(*data, QPoint(100, static_cast<int>(rows().bottom()) - 2), Qt::CopyAction);
    EXPECT_TRUE(waitFor([&] { return rowOf(work).y() < before - 20; }));
    EXPECT_TRUE(isScrolling());
    leave();
    EXPECT_FALSE(isScrolling());
}

TEST_F(OwnDropTest, WhereRowsComeToARestingPointerTheDropDecides) {
    const auto all = addMoreThanFit();
    const auto data = begin(item);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    const QPoint place(100, static_cast<int>(rows().bottom()) - 10);
    while (view.dropTargetAt(place) && scrollBar().value() < scrollBar().maximum() / 2)
        scrollBy(1);
    ASSERT_EQ(view.dropTargetAt(place), std::nullopt);
    EXPECT_TRUE(move(*data, place, Qt::CopyAction));
    EXPECT_TRUE(waitFor([&] { return view.dropTargetAt(place).has_value(); }));
    EXPECT_EQ(drop(*data, place, Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(collectionsOf(*item), 1u);
}

TEST_F(OwnDropTest, WhereNoMoreRowsComeThePlaceDecides) {
    addMoreThanFit();
    const auto data = begin(item);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    scrollBar().setValue(scrollBar().maximum());
    const QPoint belowTheRows(100, static_cast<int>(rows().bottom()) - 2);
    ASSERT_EQ(view.dropTargetAt(belowTheRows), std::nullopt);
    EXPECT_FALSE(move(*data, belowTheRows, Qt::CopyAction));
    EXPECT_FALSE(isScrolling());
}

TEST_F(OwnDropTest, UnderADetailScreenTheRowsStandStill) {
    addMoreThanFit();
    const auto data = begin(item);
    ASSERT_TRUE(enter(*data, Qt::CopyAction));
    view.perform([&] { view.preview(item); });
    EXPECT_FALSE(move(*data, QPoint(100, static_cast<int>(rows().bottom()) - 2), Qt::CopyAction));
    EXPECT_FALSE(isScrolling());
}

TEST_F(OwnDropTest, ReorderedRowsGlideToTheirPlaces) {
    const auto places = view._tabFrames;
    QElapsedTimer time;
    view.perform([&] { view.drags().dropCollections({{.id = home->id()}}, {100, 0}); });
    time.start();
    // At once they are what they will be for a drop, while they are still on their way for the eye.
    EXPECT_EQ(view._tabFrames.at({home->id()}), places.at({work->id()}));
    SidebarRow* first = nullptr;
    for (auto* const child : part<Sidebar>().findChildren<QWidget*>())
        if (auto* const row = dynamic_cast<SidebarRow*>(child);
            row && row->accessibleName().startsWith(u"home"))
            first = row;
    ASSERT_TRUE(first);
    const auto top = [&] { return first->mapTo(&part<ShelfContent>(), QPoint()).y(); };
    EXPECT_EQ(top(), places.at({home->id()}).top());
    EXPECT_TRUE(waitFor([&] { return top() == places.at({work->id()}).top(); }));
    EXPECT_GE(time.elapsed(), 100);
}

} // namespace
} // namespace kestrova
