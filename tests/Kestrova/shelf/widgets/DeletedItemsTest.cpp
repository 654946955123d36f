#include "Kestrova/detail/widgets/InfoRow.h"
#include "Kestrova/detail/widgets/PlainTextView.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>
#include <QContextMenuEvent>

namespace kestrova {
namespace {

/// What the shelf shows, or showed last, keeps no item. Otherwise the picture of each that is deleted would
/// be read on the main thread before it goes, and stay in memory.
class DeletedItemsTest : public WidgetFixture {
protected:
    std::weak_ptr<ClipboardItem> addPicture() {
        return add({}, ClipboardItemType::image, true, png({300, 200}, Qt::red));
    }
    /// How many there are that hold the item, beside the history itself.
    static long holders(const std::weak_ptr<ClipboardItem>& item) { return item.use_count() - 1; }
    void useGrid() {
        view.perform([&] { view._viewMode = ShelfViewMode::grid; });
    }
    bool gridShowsRed() {
        auto& grid = part<ItemGridView>();
        const auto cell = grid.visualRect(grid.model()->index(0, 0));
        return grid.viewport()->grab().toImage().pixelColor(cell.topLeft() + QPoint(60, 50)) ==
               QColor(Qt::red);
    }
};

TEST_F(DeletedItemsTest, TheShelfThatIsSeenHoldsNone) {
    const auto item = addPicture();
    show();
    for (const auto mode : {ShelfViewMode::list, ShelfViewMode::grid}) {
        view.perform([&] { view._viewMode = mode; });
        panel.grab();
        EXPECT_EQ(holders(item), 0);
    }
}

TEST_F(DeletedItemsTest, TheHiddenShelfHoldsNoneWhateverItIsNarrowedBy) {
    const auto item = addPicture();
    show();
    for (const auto mode : {ShelfViewMode::list, ShelfViewMode::grid}) {
        view.perform([&] {
            view._viewMode = mode;
            view._collectionFilter = CollectionFilter::pinned();
            view._typeFilter = ClipboardItemType::image;
        });
        panel.orderOut();
        EXPECT_EQ(holders(item), 0);
        deleteElsewhere(add(u"other"_qs)->id());
        EXPECT_EQ(holders(item), 0);
        show();
    }
}

TEST_F(DeletedItemsTest, AnItemThatIsDeletedWhileTheShelfIsHiddenGoesAtOnce) {
    std::vector<std::weak_ptr<ClipboardItem>> items;
    for (int i = 0; i < 5; ++i)
        items.push_back(addPicture());
    show();
    panel.grab();
    panel.orderOut();
    for (const auto& item : items)
        deleteElsewhere(item.lock()->id());
    for (const auto& item : items)
        EXPECT_TRUE(item.expired());
    show();
    EXPECT_EQ(list().model()->rowCount(), 0);
}

TEST_F(DeletedItemsTest, AShelfThatComesBackShowsWhatIsLeft) {
    add(u"kept"_qs);
    const auto gone = add(u"gone"_qs)->id();
    show();
    panel.orderOut();
    deleteElsewhere(gone);
    show();
    ASSERT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), u"kept");
}

TEST_F(DeletedItemsTest, APreviewThatIsOffKeepsNeitherItemNorText) {
    const std::weak_ptr item = add(u"secret"_qs);
    show();
    ASSERT_EQ(part<PlainTextView>().toPlainText(), u"secret");
    view.perform([&] { view._previewVisible = false; });
    deleteElsewhere(item.lock()->id());
    EXPECT_TRUE(item.expired());
    EXPECT_EQ(part<PlainTextView>().toPlainText(), QString());
}

TEST_F(DeletedItemsTest, APreviewOfAHiddenShelfKeepsNeitherItemNorText) {
    const std::weak_ptr item = add(u"secret"_qs);
    show();
    panel.orderOut();
    EXPECT_EQ(part<PlainTextView>().toPlainText(), u"secret");
    deleteElsewhere(item.lock()->id());
    EXPECT_TRUE(item.expired());
    EXPECT_EQ(part<PlainTextView>().toPlainText(), QString());
    EXPECT_EQ(part<InfoRow>().accessibleName(), QString());
}

TEST_F(DeletedItemsTest, AMenuThatHasClosedHoldsNone) {
    const std::weak_ptr item = add(u"secret"_qs);
    show();
    const auto place = centreOfRow(0);
    QContextMenuEvent request(QContextMenuEvent::Mouse, place, list().viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(list().viewport(), &request);
    ASSERT_TRUE(QApplication::activePopupWidget());
    EXPECT_GT(holders(item), 0);
    QApplication::activePopupWidget()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(holders(item), 0);
}

TEST_F(DeletedItemsTest, ThePictureOfAGridStaysWhileItsItemDoes) {
    const auto item = addPicture();
    show();
    useGrid();
    ASSERT_TRUE(waitFor([&] { return gridShowsRed(); }));
    panel.orderOut();
    deleteElsewhere(add(u"other"_qs)->id());
    show();
    EXPECT_TRUE(gridShowsRed());
}

} // namespace
} // namespace kestrova
