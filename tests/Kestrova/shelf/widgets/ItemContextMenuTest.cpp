#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include "Kestrova/shelf/widgets/PanelMenu.h"

#include <QApplication>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class ItemContextMenuTest : public WidgetFixture {
protected:
    static PanelMenu* menu() { return dynamic_cast<PanelMenu*>(QApplication::activePopupWidget()); }
    static QStringList titles(const QMenu& menu) {
        QStringList titles;
        for (const auto* const line : menu.actions())
            if (!line->isSeparator())
                titles.append(line->text());
        return titles;
    }
    PanelMenu* rightClick(int row) {
        auto* const viewport = list().viewport();
        const auto place = centreOfRow(row);
        QContextMenuEvent request(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
        QCoreApplication::sendEvent(viewport, &request);
        return menu();
    }
    PanelMenu* askByKey(QWidget& focused) {
        QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, focused.mapToGlobal(QPoint()));
        QCoreApplication::sendEvent(&focused, &request);
        return menu();
    }
    void listLane() {
        view.perform([&] { view.itemTapped(); });
    }
    void choose(const QString& title) {
        ASSERT_TRUE(menu());
        for (auto* const line : menu()->actions())
            if (line->text() == title) {
                QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(line).center());
                return;
            }
        FAIL() << "no entry " << title.toStdString();
    }
    /// This display takes the keyboard from the program when a menu closes, which closes all others.
    void settle() {
        QCoreApplication::processEvents();
        panel.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    }
};

TEST_F(ItemContextMenuTest, ARightClickOpensTheMenuOfTheRowAndSelectsNothing) {
    add(u"older"_s);
    add(u"newer"_s);
    show();
    const auto before = view._selection;
    auto* const opened = rightClick(1);
    ASSERT_TRUE(opened);
    EXPECT_EQ(titles(*opened), (QStringList{u"Paste"_s, u"Copy"_s, u"Edit"_s, u"Collection"_s, u"Preview"_s,
                                            u"Share..."_s, u"Delete"_s}));
    EXPECT_EQ(view._selection, before);
    choose(u"Delete"_s);
    ASSERT_EQ(view.items().size(), 1U);
    EXPECT_EQ(view.items().front()->content(), u"newer");
}

TEST_F(ItemContextMenuTest, TheMenuKeyOpensItForTheCurrentItemInTheListLaneOnly) {
    add(u"older"_s);
    add(u"newer"_s);
    show();
    listLane();
    view.perform([&] { view.moveSelection(1); });
    auto* const focused = panel.focusWidget();
    ASSERT_TRUE(focused);
    auto* const opened = askByKey(*focused);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->activeAction(), opened->actions().front());
    const auto row = list().visualRect(list().model()->index(1, 0));
    EXPECT_TRUE(QRect(list().viewport()->mapToGlobal(row.topLeft()), row.size()).contains(opened->pos()));
    choose(u"Copy"_s);
    EXPECT_EQ(pasteboard.string(), u"older"_s);
    view.perform([&] { view._lane = KeyboardLane::tags; });
    EXPECT_FALSE(askByKey(*focused));
}

TEST_F(ItemContextMenuTest, ItClosesWhenItsItemIsDeleted) {
    const auto item = add(u"words"_s);
    show();
    ASSERT_TRUE(rightClick(0));
    view.perform([&] { view.deleteItem(*item); });
    EXPECT_FALSE(menu());
}

TEST_F(ItemContextMenuTest, ItStaysWhenAnotherItemIsDeleted) {
    const auto other = add(u"other"_s);
    add(u"words"_s);
    show();
    ASSERT_TRUE(rightClick(0));
    view.perform([&] { view.deleteItem(*other); });
    EXPECT_TRUE(menu());
}

TEST_F(ItemContextMenuTest, ItClosesAsSoonAsTheShelfBeginsToGo) {
    add(u"words"_s);
    show();
    ASSERT_TRUE(rightClick(0));
    panel.animateAlpha(0, std::chrono::milliseconds(120), AnimationTiming::easeIn);
    EXPECT_FALSE(menu());
}

TEST_F(ItemContextMenuTest, ASecondRightClickLeavesOneMenu) {
    add(u"older"_s);
    add(u"newer"_s);
    show();
    const QPointer<PanelMenu> first = rightClick(0);
    ASSERT_TRUE(first);
    first->close();
    auto* const second = rightClick(1);
    ASSERT_TRUE(second);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    choose(u"Copy"_s);
    EXPECT_EQ(pasteboard.string(), u"older"_s);
}

TEST_F(ItemContextMenuTest, TheSharePickerOpensWhereTheMenuWasAndTellsOfTheChoice) {
    add(u"words"_s);
    show();
    auto* const opened = rightClick(0);
    ASSERT_TRUE(opened);
    const auto place = opened->pos();
    opened->close();
    settle();
    QStringList chosen;
    panel.pickShareTarget({{.identifier = u"notes"_s, .name = u"Notes & more"_s, .icon = {}}},
                          [&](const ShareTarget& target) { chosen.append(target.identifier); });
    ASSERT_TRUE(menu());
    EXPECT_EQ(menu()->pos(), place);
    choose(u"Notes && more"_s);
    EXPECT_EQ(chosen, QStringList{u"notes"_s});
}

TEST_F(ItemContextMenuTest, MailIsNamedAsTheWayAndByItsProgram) {
    show();
    panel.pickShareTarget(
        {{.identifier = u"mail"_s, .name = u"Post"_s, .icon = {}, .means = ShareTarget::Means::mail}},
        [](const auto&) {});
    ASSERT_TRUE(menu());
    EXPECT_EQ(titles(*menu()), QStringList{u"메일로 보내기 (Post)"_s});
}

TEST_F(ItemContextMenuTest, APickerThatNoMenuAskedForOpensInTheMiddle) {
    show();
    panel.pickShareTarget({{.identifier = u"notes"_s, .name = u"Notes"_s, .icon = {}}}, [](const auto&) {});
    ASSERT_TRUE(menu());
    EXPECT_TRUE(panel.geometry().contains(menu()->pos()));
}

TEST_F(ItemContextMenuTest, WithoutAnApplicationThePickerSaysSoInOneDisabledLine) {
    show();
    panel.pickShareTarget({}, [](const auto&) {});
    ASSERT_TRUE(menu());
    EXPECT_EQ(titles(*menu()), QStringList{u"공유할 수 있는 앱이 없어요"_s});
    EXPECT_FALSE(menu()->actions().front()->isEnabled());
}

TEST_F(ItemContextMenuTest, ShareAsksForAnApplicationOnlyInTheNextTurn) {
    add(u"words"_s);
    show();
    ASSERT_TRUE(rightClick(0));
    choose(u"Share..."_s);
    EXPECT_TRUE(sharing.asked.empty());
    EXPECT_FALSE(menu());
    EXPECT_TRUE(waitFor([this] { return sharing.asked.size() == 1; }));
}

TEST_F(ItemContextMenuTest, AShelfThatHasGoneInTheTurnBetweenAsksNobody) {
    add(u"words"_s);
    show();
    ASSERT_TRUE(rightClick(0));
    choose(u"Share..."_s);
    panel.orderOut();
    ASSERT_TRUE(waitFor([&] { return !sharing.asked.empty(); }));
    EXPECT_FALSE(menu());
}

} // namespace
} // namespace kestrova
