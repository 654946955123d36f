#include "Kestrova/detail/widgets/ActionRowButton.h"
#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "Kestrova/shelf/widgets/DetailOverlay.h"
#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>

namespace kestrova {
namespace {

/// The card as it lies over the lists.
class ActionsCardOverlayTest : public WidgetFixture {
protected:
    ActionsCardOverlayTest() {
        item = add(u"words"_qs);
        show();
    }
    void openCard() {
        view.perform([&] { view._route = DetailRoute::actions(item); });
    }
    void comeToRest() {
        panel.orderOut();
        panel.orderFrontRegardless();
    }
    ItemActionsCardWidget& card() { return part<ItemActionsCardWidget>(); }
    QStringList labels() {
        QStringList labels;
        for (const auto& row : card().card().rows())
            labels.append(row.label);
        return labels;
    }
    bool press(std::uint16_t keyCode, std::uint32_t flags = 0) {
        return monitors.send({EventMask::keyDown, panel.windowNumber(), {keyCode, flags, {}, false}});
    }
    bool hold(std::uint16_t keyCode, std::uint32_t flags = 0) {
        return monitors.send({EventMask::keyDown, panel.windowNumber(), {keyCode, flags, {}, true}});
    }
    void choose(const QString& label) {
        const auto place = labels().indexOf(label);
        ASSERT_GE(place, 0) << qPrintable(label);
        card().card().rowClicked(place);
    }
    std::shared_ptr<KovaCollection> addCollection(const QString& name) {
        const auto collection =
            std::make_shared<KovaCollection>(name, m_sortOrder++, std::nullopt, std::nullopt);
        m_collectionsElsewhere.insert(collection);
        EXPECT_TRUE(m_collectionsElsewhere.save());
        return collection;
    }
    void removeElsewhere(KovaCollection& collection) {
        m_collectionsElsewhere.remove(collection);
        EXPECT_TRUE(m_collectionsElsewhere.save());
    }
    std::size_t keyMonitors() const { return monitors.localMonitors(EventMask::keyDown); }

    std::shared_ptr<ClipboardItem> item;

private:
    ModelContext m_collectionsElsewhere{*m_container};
    std::int64_t m_sortOrder = 0;
};

TEST_F(ActionsCardOverlayTest, ItHasAMonitorExactlyWhileItIsShown) {
    const auto ofTheShelf = keyMonitors();
    openCard();
    EXPECT_EQ(keyMonitors(), ofTheShelf + 1);
    panel.orderOut();
    EXPECT_EQ(keyMonitors(), ofTheShelf);
    show();
    EXPECT_EQ(view._route, DetailRoute::actions(item));
    EXPECT_EQ(keyMonitors(), ofTheShelf + 1);
    EXPECT_TRUE(press(VirtualKey::escape));
    EXPECT_FALSE(view._route);
    EXPECT_EQ(keyMonitors(), ofTheShelf);
}

struct LeavingKey {
    const char* name;
    int stepsDown;
    std::uint16_t keyCode;
    std::uint32_t flags = 0;
};

class ActionsCardLeavingKeyTest : public ActionsCardOverlayTest,
                                  public testing::WithParamInterface<LeavingKey> {};

TEST_P(ActionsCardLeavingKeyTest, DoesNothingInTheNextScreenHoweverLongItIsHeld) {
    openCard();
    for (int step = 0; step < GetParam().stepsDown; ++step)
        EXPECT_TRUE(press(VirtualKey::downArrow));
    EXPECT_TRUE(press(GetParam().keyCode, GetParam().flags));
    const auto route = view._route;
    ASSERT_NE(route, DetailRoute::actions(item));
    const auto count = view.items().size();
    for (int repeat = 0; repeat < 3; ++repeat)
        EXPECT_TRUE(hold(GetParam().keyCode, GetParam().flags));
    EXPECT_EQ(view._route, route);
    EXPECT_EQ(view.items().size(), count);
    EXPECT_EQ(dismissals, 0);
}

INSTANTIATE_TEST_SUITE_P(Keys, ActionsCardLeavingKeyTest,
                         testing::Values(LeavingKey{"Escape", 0, VirtualKey::escape},
                                         LeavingKey{"Backspace", 0, VirtualKey::deleteKey},
                                         LeavingKey{"ReturnOnEdit", 2, VirtualKey::returnKey},
                                         LeavingKey{"ReturnOnPreview", 3, VirtualKey::returnKey},
                                         LeavingKey{"Space", 0, VirtualKey::space},
                                         LeavingKey{"CommandE", 0, VirtualKey::e, ModifierFlags::command},
                                         LeavingKey{"CommandC", 0, VirtualKey::c, ModifierFlags::command}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ActionsCardOverlayTest, WorksByKeysAlone) {
    openCard();
    EXPECT_TRUE(press(VirtualKey::downArrow));
    EXPECT_EQ(panel.focusWidget()->accessibleName(), u"Copy"_qs);
    EXPECT_TRUE(press(VirtualKey::returnKey));
    EXPECT_EQ(pasteboard.string(), u"words"_qs);
    EXPECT_FALSE(view._route);
    EXPECT_NE(panel.focusWidget(), nullptr);
}

TEST_F(ActionsCardOverlayTest, TheScreenThatItOpensHasItsOwnKeys) {
    const auto ofTheShelf = keyMonitors();
    openCard();
    EXPECT_TRUE(press(VirtualKey::space));
    EXPECT_EQ(view._route, DetailRoute::preview(item));
    EXPECT_EQ(keyMonitors(), ofTheShelf);
    EXPECT_TRUE(press(VirtualKey::escape));
    EXPECT_EQ(view._route, DetailRoute::actions(item));
    EXPECT_EQ(keyMonitors(), ofTheShelf + 1);
}

TEST_F(ActionsCardOverlayTest, APressBesideItClosesItAndHitsNothingElse) {
    add(u"other"_qs);
    openCard();
    comeToRest();
    const auto selected = view._selection;
    auto& overlay = part<DetailOverlay>();
    QTest::mouseClick(&overlay, Qt::RightButton, {}, {20, 300});
    EXPECT_TRUE(view._route);
    QTest::mouseClick(&overlay, Qt::LeftButton, {}, {300, 140});
    EXPECT_FALSE(view._route);
    EXPECT_EQ(view._selection, selected);
}

TEST_F(ActionsCardOverlayTest, APressOnItsEdgeDoesNotCloseIt) {
    openCard();
    comeToRest();
    QTest::mouseClick(&card(), Qt::LeftButton, {}, {4, 4});
    EXPECT_TRUE(view._route);
}

TEST_F(ActionsCardOverlayTest, ItsRowsFollowWhatHappensElsewhere) {
    openCard();
    const auto work = addCollection(u"Work"_qs);
    choose(u"Collection"_qs);
    EXPECT_EQ(labels(), QStringList({u"뒤로"_qs, u"Work"_qs}));
    addCollection(u"Home"_qs);
    EXPECT_EQ(labels(), QStringList({u"뒤로"_qs, u"Work"_qs, u"Home"_qs}));
    choose(u"Home"_qs);
    EXPECT_EQ(card().card().rows()[2].icon, u"checkmark.circle.fill"_qs);
    removeElsewhere(*work);
    EXPECT_EQ(labels(), QStringList({u"뒤로"_qs, u"Home"_qs}));
    EXPECT_TRUE(view._route);
}

TEST_F(ActionsCardOverlayTest, APinThatIsSetElsewhereIsSeen) {
    openCard();
    view.perform([&] { view.togglePin(*item); });
    EXPECT_TRUE(labels().contains(u"Unpin"_qs));
}

TEST_F(ActionsCardOverlayTest, ItIsAsHighAsItsRowsAndNeverHigherThanThePanel) {
    for (int i = 0; i < 40; ++i)
        addCollection(QString::number(i));
    openCard();
    comeToRest();
    EXPECT_EQ(card().height(), card().heightForContent());
    const auto bottom = card().geometry().bottom();
    choose(u"Collection"_qs);
    EXPECT_LT(card().height(), card().heightForContent());
    EXPECT_TRUE(part<ShelfContent>().rect().contains(card().geometry()));
    EXPECT_EQ(card().geometry().bottom(), bottom);
}

TEST_F(ActionsCardOverlayTest, TheMenuOfApplicationsStandsAtItsRow) {
    openCard();
    comeToRest();
    ASSERT_NO_FATAL_FAILURE(choose(u"Share…"_qs));
    ASSERT_TRUE(waitFor([] { return dynamic_cast<PanelMenu*>(QApplication::activePopupWidget()); }));
    auto* const menu = QApplication::activePopupWidget();
    EXPECT_TRUE(card().rect().translated(card().mapToGlobal(QPoint())).contains(menu->pos()));
    EXPECT_EQ(view._route, DetailRoute::actions(item));
    menu->close();
}

TEST_F(ActionsCardOverlayTest, AnItemThatIsDeletedElsewhereIsKept) {
    openCard();
    deleteElsewhere(item->id());
    EXPECT_TRUE(item->isDeleted());
    EXPECT_EQ(labels().front(), u"Paste"_qs);
    choose(u"Pin"_qs);
    EXPECT_FALSE(view._route);
}

} // namespace
} // namespace kestrova
