#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/ItemViewAccessible.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleActionInterface>

namespace kestrova {
namespace {

QAccessibleInterface& interfaceOf(QObject& object) {
    auto* const found = QAccessible::queryAccessibleInterface(&object);
    if (!found)
        qFatal("Not accessible.");
    return *found;
}

bool canBeUsed(QAccessibleInterface& element) {
    if (element.state().focusable)
        return true;
    auto* const action = element.actionInterface();
    const auto names = action ? action->actionNames() : QStringList();
    return names.contains(QAccessibleActionInterface::pressAction()) ||
           names.contains(QAccessibleActionInterface::toggleAction());
}

class ShelfAccessibilityTest : public WidgetFixture {
protected:
    void walk(QAccessibleInterface& element, int depth = 0) {
        if (element.state().invisible)
            return;
        if (canBeUsed(element)) {
            EXPECT_FALSE(element.text(QAccessible::Name).isEmpty()) << describe(element);
            EXPECT_NE(element.role(), QAccessible::NoRole) << describe(element);
            EXPECT_NE(element.role(), QAccessible::Client) << describe(element);
            ++usable;
        }
        ASSERT_LT(depth, 20);
        for (int i = 0; i < element.childCount(); ++i) {
            auto* const child = element.child(i);
            ASSERT_NE(child, nullptr);
            walk(*child, depth + 1);
        }
    }
    static std::string describe(QAccessibleInterface& element) {
        auto* const object = element.object();
        return (object ? object->metaObject()->className() : "item") + std::string(" ") +
               element.text(QAccessible::Name).toStdString();
    }
    QAccessibleInterface& button(const QString& name) {
        for (auto* const child : panel.findChildren<QAbstractButton*>())
            if (child->accessibleName().startsWith(name))
                return interfaceOf(*child);
        qFatal("No such button.");
    }
    QAccessibleInterface& row(int index) { return *interfaceOf(list()).child(index); }

    int usable = 0;
};

TEST_F(ShelfAccessibilityTest, AllThatCanBeUsedHasANameAndARole) {
    add(u"one"_qs);
    add(u"https://a.example"_qs, ClipboardItemType::url, true);
    show();
    walk(interfaceOf(panel));
    // Search, four buttons, three lenses, the new collection, three chips and two rows.
    EXPECT_GE(usable, 13);
    for (const bool isGrid : {false, true}) {
        view.perform([&] { view._viewMode = isGrid ? ShelfViewMode::grid : ShelfViewMode::list; });
        for (const auto& route :
             {DetailRoute::preview(view.items().front()), DetailRoute::edit(view.items().front()),
              DetailRoute::actions(view.items().front())}) {
            view.perform([&] { view._route = route; });
            walk(interfaceOf(panel));
            view.perform([&] { view.popRoute(); });
        }
    }
}

TEST_F(ShelfAccessibilityTest, ButtonsTellWhetherTheyAreOn) {
    show();
    for (const auto& name : {u"사이드바"_qs, u"프리뷰"_qs}) {
        auto& toggle = button(name);
        EXPECT_EQ(toggle.role(), QAccessible::CheckBox);
        EXPECT_TRUE(toggle.state().checkable);
        const bool before = toggle.state().checked;
        toggle.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        EXPECT_NE(toggle.state().checked, before);
        EXPECT_TRUE(toggle.text(QAccessible::Description).contains(u'⌘'));
    }
    EXPECT_FALSE(view._previewVisible);
    EXPECT_FALSE(view._sidebarVisible);
}

TEST_F(ShelfAccessibilityTest, TheViewModeIsToldInWords) {
    show();
    auto& mode = button(u"보기 모드"_qs);
    EXPECT_EQ(mode.text(QAccessible::Name), u"보기 모드: 목록");
    mode.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(mode.text(QAccessible::Name), u"보기 모드: 격자");
}

TEST_F(ShelfAccessibilityTest, ChipsAreOneChoiceOfSeveral) {
    add(u"one"_qs);
    add(u"https://a.example"_qs, ClipboardItemType::url);
    show();
    auto& all = button(u"All"_qs);
    auto& links = button(u"링크"_qs);
    for (auto* const chip : {&all, &links})
        EXPECT_EQ(chip->role(), QAccessible::RadioButton);
    EXPECT_TRUE(all.state().checked);
    links.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(all.state().checked);
    EXPECT_TRUE(links.state().checked);
    EXPECT_EQ(view._typeFilter, ClipboardItemType::url);
    // To choose it again takes nothing back.
    links.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(links.state().checked);
}

TEST_F(ShelfAccessibilityTest, LensesAreEntriesOfAListWithTheirCounts) {
    add(u"one"_qs);
    show();
    auto& pinned = button(u"Pinned"_qs);
    EXPECT_EQ(pinned.role(), QAccessible::ListItem);
    EXPECT_EQ(pinned.parent()->role(), QAccessible::List);
    EXPECT_EQ(pinned.text(QAccessible::Name), u"Pinned, 항목 0개");
    EXPECT_FALSE(pinned.state().selected);
    EXPECT_FALSE(pinned.state().checkable);
    pinned.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(pinned.state().selected);
    EXPECT_FALSE(button(u"전체"_qs).state().selected);
}

TEST_F(ShelfAccessibilityTest, RowsTellWhatTheyAreAndWhereTheyStand) {
    add(u"one"_qs);
    add(u"two"_qs, ClipboardItemType::text, true);
    show();
    auto& rows = interfaceOf(list());
    EXPECT_EQ(rows.role(), QAccessible::List);
    ASSERT_EQ(rows.childCount(), 2);
    EXPECT_EQ(row(0).role(), QAccessible::ListItem);
    EXPECT_EQ(row(0).text(QAccessible::Name), u"텍스트, two, 고정됨, ⌘1");
    EXPECT_EQ(row(1).text(QAccessible::Description), u"2 / 2");
    EXPECT_TRUE(row(0).state().selected);
    EXPECT_FALSE(row(1).state().selected);
    EXPECT_EQ(row(1).parent(), &rows);
    EXPECT_EQ(rows.indexOfChild(&row(1)), 1);
    EXPECT_EQ(rows.childAt(row(1).rect().center().x(), row(1).rect().center().y()), &row(1));
    EXPECT_EQ(rows.child(2), nullptr);
    EXPECT_EQ(rows.child(-1), nullptr);
}

TEST_F(ShelfAccessibilityTest, APressSelectsTheRow) {
    add(u"one"_qs);
    const auto newest = add(u"two"_qs);
    show();
    row(1).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_NE(view._selection, newest->id());
    EXPECT_TRUE(row(1).state().selected);
    EXPECT_TRUE(row(1).state().focused);
    EXPECT_EQ(view._lane, KeyboardLane::list);
}

TEST_F(ShelfAccessibilityTest, ARowThatHasGoneIsNotValid) {
    add(u"one"_qs);
    add(u"two"_qs);
    show();
    auto& last = row(1);
    ASSERT_TRUE(last.isValid());
    view.perform([&] { view.deleteItem(*view.currentItem()); });
    EXPECT_FALSE(last.isValid());
    EXPECT_EQ(last.text(QAccessible::Name), QString());
    EXPECT_EQ(row(0).text(QAccessible::Name), u"텍스트, one, ⌘1");
}

TEST_F(ShelfAccessibilityTest, TheKeyboardStandsOnTheRowThatTheArrowKeysWalkTo) {
    add(u"one"_qs);
    add(u"two"_qs);
    show();
    auto& rows = interfaceOf(list());
    EXPECT_TRUE(row(0).state().selected);
    EXPECT_FALSE(row(0).state().focused);
    EXPECT_EQ(rows.focusChild(), nullptr);
    view.perform([&] { view.enterLane(KeyboardLane::list); });
    EXPECT_EQ(rows.focusChild(), &row(0));
    view.perform([&] { view.moveSelection(1); });
    EXPECT_EQ(rows.focusChild(), &row(1));
    EXPECT_TRUE(row(1).state().focused);
    EXPECT_FALSE(row(0).state().focused);
}

TEST_F(ShelfAccessibilityTest, WhileOneTypesTheSearchTellsWhatReturnWouldPaste) {
    add(u"one"_qs);
    add(u"two"_qs);
    show();
    auto& search = interfaceOf(field());
    EXPECT_EQ(search.text(QAccessible::Name), u"검색");
    EXPECT_EQ(search.text(QAccessible::Description), u"텍스트, two, ⌘1, 1 / 2");
    QTest::keyClicks(&field(), u"one"_qs);
    EXPECT_EQ(search.text(QAccessible::Description), u"텍스트, one, ⌘1, 1 / 1");
    QTest::keyClicks(&field(), u"x"_qs);
    EXPECT_EQ(search.text(QAccessible::Description), u"항목 0개");
}

TEST_F(ShelfAccessibilityTest, ALongHistoryMakesNoEntryBeforeItIsAskedForOne) {
    for (int i = 0; i < 50; ++i)
        add(QString::number(i));
    show();
    auto& rows = interfaceOf(list());
    EXPECT_EQ(rows.childCount(), 50);
    auto* const one = rows.child(40);
    // Ids are given in order: nothing was made in between.
    const auto id = QAccessible::uniqueId(one);
    EXPECT_EQ(rows.child(40), one);
    EXPECT_EQ(QAccessible::uniqueId(rows.child(10)), id + 1);
}

TEST_F(ShelfAccessibilityTest, ARowFarOutOfSightComesIntoSightWithItsMenu) {
    for (int i = 0; i < 200; ++i)
        add(QString::number(i));
    show();
    QPoint place;
    list().onContextMenu = [&](const auto&, QPoint at) { place = at; };
    ASSERT_TRUE(row(150).state().offscreen);
    row(150).actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_FALSE(row(150).state().offscreen);
    const auto shown = list().viewport()->rect().translated(list().viewport()->mapToGlobal(QPoint()));
    EXPECT_TRUE(shown.contains(place));
    EXPECT_TRUE(row(150).rect().contains(place));
    row(20).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(row(20).state().offscreen);
    EXPECT_TRUE(row(20).state().selected);
}

TEST_F(ShelfAccessibilityTest, ANameIsNewOnlyIfItDiffers) {
    QWidget widget;
    EXPECT_TRUE(setSpokenName(widget, u"one"_qs));
    EXPECT_FALSE(setSpokenName(widget, u"one"_qs));
    EXPECT_TRUE(setSpokenName(widget, u"two"_qs));
    EXPECT_EQ(widget.accessibleName(), u"two");
    EXPECT_TRUE(setSpokenDescription(widget, u"one"_qs));
    EXPECT_FALSE(setSpokenDescription(widget, u"one"_qs));
    EXPECT_EQ(widget.accessibleDescription(), u"one");
}

/// What programs that read to people are told without asking.
class ShelfNewsTest : public WidgetFixture {
protected:
    std::vector<News> toldBy(const std::function<void()>& act) {
        news.clear();
        view.perform(act);
        return news;
    }
    News selected(ItemView& items, int row) { return {QAccessible::Selection, &items, row}; }
    News focused(ItemView& items, int row) { return {QAccessible::Focus, &items, row}; }
    QString saidOfSearch() { return interfaceOf(field()).text(QAccessible::Description); }
};

TEST_F(ShelfNewsTest, ARowThatTheArrowKeysWalkToIsSelectedAndHasTheKeyboard) {
    add(u"a"_qs);
    add(u"b"_qs);
    show();
    EXPECT_EQ(toldBy([&] { view.enterLane(KeyboardLane::list); }),
              (std::vector{selected(list(), 0), focused(list(), 0)}));
    EXPECT_EQ(toldBy([&] { view.moveSelection(1); }), (std::vector{selected(list(), 1), focused(list(), 1)}));
    EXPECT_EQ(toldBy([&] { view._commandHeld = true; }), std::vector<News>());
}

TEST_F(ShelfNewsTest, WhileOneTypesARowIsSelectedAndHasNotTheKeyboard) {
    add(u"ab"_qs);
    add(u"b"_qs);
    show();
    EXPECT_EQ(toldBy([&] { view._query = u"a"_qs; }), std::vector{selected(list(), 0)});
}

TEST_F(ShelfNewsTest, TheOtherViewTellsWhereTheKeyboardIsInIt) {
    add(u"a"_qs);
    show();
    view.perform([&] { view.enterLane(KeyboardLane::list); });
    auto& grid = part<ItemGridView>();
    EXPECT_EQ(toldBy([&] { view.flipViewMode(); }), (std::vector{selected(grid, 0), focused(grid, 0)}));
}

TEST_F(ShelfNewsTest, ARowThatMovesBecauseAnotherArrivesIsToldAtItsNewPlace) {
    add(u"a"_qs);
    show();
    view.perform([&] { view.enterLane(KeyboardLane::list); });
    news.clear();
    add(u"b"_qs);
    EXPECT_EQ(news, (std::vector{selected(list(), 1), focused(list(), 1)}));
}

TEST_F(ShelfNewsTest, ARowThatIsPinnedHasAnotherName) {
    add(u"a"_qs);
    show();
    EXPECT_EQ(toldBy([&] { view.togglePin(*view.currentItem()); }),
              (std::vector{News{QAccessible::NameChanged, &list(), 0}}));
    EXPECT_EQ(saidOfSearch(), u"텍스트, a, 고정됨, ⌘1, 1 / 1");
}

TEST_F(ShelfNewsTest, TheSearchTellsHowManyAreLeftThoughTheFirstStaysTheFirst) {
    add(u"b"_qs);
    add(u"ab"_qs);
    add(u"abc"_qs);
    show();
    QTest::keyClicks(&field(), u"a"_qs);
    EXPECT_TRUE(saidOfSearch().endsWith(u"1 / 2"));
    QTest::keyClicks(&field(), u"bc"_qs);
    EXPECT_TRUE(saidOfSearch().endsWith(u"1 / 1"));
}

} // namespace
} // namespace kestrova
