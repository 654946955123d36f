#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QScrollBar>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class TabFramesTest : public WidgetFixture {
protected:
    QRectF frameOf(const std::shared_ptr<KovaCollection>& collection) const {
        return view._tabFrames.at({collection->id()});
    }
    QRectF frameOfRow(std::size_t row) {
        auto& content = part<ShelfContent>();
        std::vector<SidebarRow*> rows;
        for (auto* const child : part<Sidebar>().findChildren<QWidget*>())
            if (auto* const found = dynamic_cast<SidebarRow*>(child))
                rows.push_back(found);
        return QRectF(rows.at(row)->mapTo(&content, QPoint()), rows.at(row)->size());
    }
    QScrollBar& scrollBar() {
        for (auto* const bar : part<Sidebar>().findChildren<QScrollBar*>())
            if (bar->orientation() == Qt::Vertical)
                return *bar;
        qFatal("The sidebar has no scroll bar.");
    }
};

TEST_F(TabFramesTest, AreThoseOfTheRowsOfCollections) {
    const auto work = addCollection(u"work"_s);
    const auto home = addCollection(u"home"_s);
    show();
    EXPECT_EQ(view._tabFrames.size(), 2u);
    EXPECT_EQ(frameOf(work), frameOfRow(fixedLensCount));
    EXPECT_EQ(frameOf(home), frameOfRow(fixedLensCount + 1));
}

TEST_F(TabFramesTest, FollowCollectionsThatComeAndGo) {
    show();
    EXPECT_TRUE(view._tabFrames.empty());
    const auto work = addCollection(u"work"_s);
    EXPECT_EQ(frameOf(work), frameOfRow(fixedLensCount));
    view.perform([&] { view.deleteCollection(work); });
    EXPECT_TRUE(view._tabFrames.empty());
}

TEST_F(TabFramesTest, ThereAreNoneWhileTheSidebarIsHidden) {
    addCollection(u"work"_s);
    show();
    view.perform([&] { view._sidebarVisible = false; });
    EXPECT_TRUE(waitFor([&] { return view._tabFrames.empty(); }));
    view.perform([&] { view._sidebarVisible = true; });
    EXPECT_TRUE(waitFor([&] { return view._tabFrames.size() == 1; }));
}

TEST_F(TabFramesTest, FollowTheScrollingAndARowOutOfSightCannotBeHit) {
    std::vector<std::shared_ptr<KovaCollection>> all;
    for (int i = 0; i < 30; ++i)
        all.push_back(addCollection(QString::number(i)));
    show();
    const auto inSight = frameOf(all.front());
    const auto outOfSight = frameOf(all.back());
    EXPECT_EQ(outOfSight, frameOfRow(fixedLensCount + 29));
    EXPECT_EQ(view.dropTargetAt(inSight.center()), TabDropTarget{all.front()->id()});
    EXPECT_EQ(view.dropTargetAt(outOfSight.center()), std::nullopt);
    EXPECT_GT(outOfSight.center().y(), frameOf(all[28]).center().y());
    scrollBar().setValue(scrollBar().maximum());
    EXPECT_EQ(view.dropTargetAt(frameOf(all.back()).center()), TabDropTarget{all.back()->id()});
    EXPECT_EQ(frameOf(all.back()), frameOfRow(fixedLensCount + 29));
    EXPECT_EQ(frameOf(all.front()), frameOfRow(fixedLensCount));
    EXPECT_EQ(view.dropTargetAt(frameOf(all.front()).center()), std::nullopt);
}

TEST_F(TabFramesTest, ChangeWithoutBeingPaintedAnew) {
    for (int i = 0; i < 30; ++i)
        addCollection(QString::number(i));
    show();
    int renders = 0;
    const auto render = std::exchange(view.onRender, [&] { ++renders; });
    scrollBar().setValue(scrollBar().maximum());
    EXPECT_EQ(renders, 0);
    view.onRender = render;
}

} // namespace
} // namespace kestrova
