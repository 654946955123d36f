#include "Kestrova/shelf/widgets/DragStart.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>
#include <QMimeData>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class DragBeginTest : public WidgetFixture {
protected:
    void SetUp() override {
        older = add(u"older"_s);
        newest = add(u"newest"_s);
        work = addCollection(u"work"_s);
        show();
        list().onDrag = [this](const auto& item, const DragPicture& picture) {
            dragged.append(item->content());
            pictures.push_back(picture);
        };
        part<Sidebar>().onDrag = [this](const auto& collection, const DragPicture& picture) {
            dragged.append(collection->name());
            pictures.push_back(picture);
        };
    }

    QWindow& window() { return *panel.windowHandle(); }
    QPoint rowPlace(int row) { return list().viewport()->mapTo(&panel, centreOfRow(row)); }
    QPoint collectionPlace() {
        return part<ShelfContent>().mapTo(&panel, view._tabFrames.at({work->id()}).center().toPoint());
    }
    void pull(QPoint from, int distance, Qt::MouseButton button = Qt::LeftButton) {
        const QPoint to = from + QPoint(distance, 0);
        QTest::mousePress(&window(), button, {}, from);
        QTest::mouseMove(&window(), to);
        QTest::mouseRelease(&window(), button, {}, to);
    }
    void click(QPoint place) { QTest::mouseClick(&window(), Qt::LeftButton, {}, place); }

    std::shared_ptr<ClipboardItem> older;
    std::shared_ptr<ClipboardItem> newest;
    std::shared_ptr<KovaCollection> work;
    QStringList dragged;
    std::vector<DragPicture> pictures;
    const int far = QApplication::startDragDistance();
};

TEST_F(DragBeginTest, ARowThatIsPulledIsDraggedAndNotSelected) {
    pull(rowPlace(1), far);
    EXPECT_EQ(dragged, QStringList{u"older"_s});
    EXPECT_EQ(view._selection, newest->id());
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(DragBeginTest, TheItemThatWasPressedIsDraggedWhereverThePointerIsByThen) {
    QTest::mousePress(&window(), Qt::LeftButton, {}, rowPlace(0));
    QTest::mouseMove(&window(), rowPlace(1));
    EXPECT_EQ(dragged, QStringList{u"newest"_s});
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, rowPlace(1));
    EXPECT_EQ(dragged.size(), 1);
}

TEST_F(DragBeginTest, AfterADragAClickSelectsAndADoubleClickCopiesAsBefore) {
    pull(rowPlace(1), far);
    click(rowPlace(1));
    EXPECT_EQ(view._selection, older->id());
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, rowPlace(1));
    EXPECT_EQ(hud.shown.size(), 1u);
}

TEST_F(DragBeginTest, AShortPullIsAClick) {
    pull(rowPlace(1), far - 1);
    EXPECT_EQ(dragged, QStringList());
    EXPECT_EQ(view._selection, older->id());
}

TEST_F(DragBeginTest, OtherButtonsDragNothing) {
    for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
        pull(rowPlace(0), far, button);
        pull(collectionPlace(), far, button);
    }
    EXPECT_EQ(dragged, QStringList());
}

TEST_F(DragBeginTest, AnItemThatWasDeletedSinceThePressIsNotDragged) {
    QTest::mousePress(&window(), Qt::LeftButton, {}, rowPlace(0));
    deleteElsewhere(newest->id());
    QTest::mouseMove(&window(), rowPlace(0) + QPoint(far, 0));
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, rowPlace(0));
    EXPECT_EQ(dragged, QStringList());
}

TEST_F(DragBeginTest, NothingIsUnderThePointerOnceItCarriesAnItem) {
    QTest::mouseMove(&window(), rowPlace(1));
    QTest::mouseMove(&window(), rowPlace(0));
    ASSERT_EQ(view._hoveredItem, newest->id());
    QTest::mousePress(&window(), Qt::LeftButton, {}, rowPlace(0));
    QTest::mouseMove(&window(), rowPlace(0) + QPoint(far, 0));
    EXPECT_EQ(view._hoveredItem, std::nullopt);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, rowPlace(0) + QPoint(far, 0));
}

TEST_F(DragBeginTest, TheRowOfACollectionThatIsPulledIsDraggedAndNotOpened) {
    pull(collectionPlace(), far);
    EXPECT_EQ(dragged, QStringList{u"work"_s});
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    click(collectionPlace());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::collection(work->id()));
}

TEST_F(DragBeginTest, TheFixedRowsAreNotDragged) {
    const auto& sidebar = part<Sidebar>();
    pull(collectionPlace() - QPoint(0, 2 * sidebar.currentRow().height()), far);
    EXPECT_EQ(dragged, QStringList());
}

TEST_F(DragBeginTest, ThePointerCarriesASmallPictureAsFineAsTheScreen) {
    pull(rowPlace(0), far);
    pull(collectionPlace(), far);
    ASSERT_EQ(pictures.size(), 2u);
    for (const auto& picture : pictures) {
        const auto size = picture.pixmap.deviceIndependentSize();
        EXPECT_EQ(picture.pixmap.devicePixelRatio(), panel.devicePixelRatioF());
        EXPECT_GT(size.width(), 100);
        EXPECT_LE(size.width(), 260);
        EXPECT_TRUE(QRectF({}, size).adjusted(0, 0, 1, 1).contains(picture.hotSpot));
    }
}

TEST_F(DragBeginTest, AButtonThatHasBeenLetGoByTheNextTurnDragsNothing) {
    auto& content = part<ShelfContent>();
    DragStart start(view, queue, content);
    bool hasBegun = false;
    start.start({}, [&]() -> QMimeData* {
        hasBegun = true;
        return nullptr;
    });
    bool isNextTurn = false;
    queue.post([&] { isNextTurn = true; });
    EXPECT_TRUE(waitFor([&] { return isNextTurn; }));
    EXPECT_FALSE(hasBegun);
}

} // namespace
} // namespace kestrova
