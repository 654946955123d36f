#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"

#include "Kestrova/detail/widgets/ActionRowButton.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "tests/Kestrova/detail/CardFixture.h"

#include <QAccessible>
#include <QTest>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

/// The card of a text in a window.
class ItemActionsCardWidgetTest : public CardFixture {
protected:
    ItemActionsCardWidgetTest() {
        installPanelAccessibility();
        open({u"A"_qs, u"B"_qs});
    }
    void open(const QStringList& collections) {
        auto actions = actionsOf(insert(u"words"_qs));
        actions.allCollections = insertCollections(collections);
        widget = std::make_unique<ItemActionsCardWidget>(makeCard(std::move(actions)), u"words"_qs, nullptr);
        widget->setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        widget->resize(ItemActionsCardWidget::width, std::min(widget->heightForContent(), 516));
        widget->show();
        widget->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(widget.get()));
        widget->setFocus();
    }
    std::vector<ActionRowButton*> rows() {
        std::vector<ActionRowButton*> found;
        for (auto* const child : widget->findChildren<QWidget*>())
            if (auto* const row = dynamic_cast<ActionRowButton*>(child); row && row->isVisible())
                found.push_back(row);
        return found;
    }
    QStringList names() {
        QStringList names;
        for (const auto* const row : rows())
            names.append(row->accessibleName());
        return names;
    }
    ActionRowButton& row(const QString& name) {
        const auto all = rows();
        const auto found = std::ranges::find(all, name, &QWidget::accessibleName);
        if (found == all.end())
            qFatal("There is no such row.");
        return **found;
    }
    ItemActionsCard& card() { return widget->card(); }
    void openCollections() { QTest::mouseClick(&row(u"Collection"_qs), Qt::LeftButton); }
    /// The pointer goes to that point of the row, a little at a time.
    static void movePointer(QWidget& to, QPoint place) {
        QMouseEvent event(QEvent::MouseMove, place, to.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&to, &event);
    }
    static bool isLit(QWidget& row) {
        const auto picture = row.grab().toImage();
        return picture.pixelColor(picture.width() / 2, 2) != picture.pixelColor(0, 0);
    }
    bool isInSight(const QWidget& row) const {
        const QRect place(row.mapTo(widget.get(), QPoint()), row.size());
        return widget->rect().contains(place) && !row.visibleRegion().isEmpty() &&
               row.visibleRegion().boundingRect() == row.rect();
    }

    std::unique_ptr<ItemActionsCardWidget> widget;
};

TEST_F(ItemActionsCardWidgetTest, ShowsTheRowsOfTheScreen) {
    EXPECT_EQ(names(), QStringList({u"Paste"_qs, u"Copy"_qs, u"Preview"_qs, u"Pin"_qs, u"Collection"_qs,
                                    u"Share…"_qs, u"Delete"_qs}));
    openCollections();
    EXPECT_EQ(names(), QStringList({u"뒤로"_qs, u"A"_qs, u"B"_qs}));
}

TEST_F(ItemActionsCardWidgetTest, TheKeysAreTheCardsWhileItIsOnTheScreen) {
    EXPECT_EQ(monitors.localMonitors(EventMask::keyDown), 1U);
    widget->hide();
    EXPECT_EQ(monitors.localMonitors(), 0U);
    widget->show();
    EXPECT_EQ(monitors.localMonitors(EventMask::keyDown), 1U);
    widget.reset();
    EXPECT_EQ(monitors.localMonitors(), 0U);
}

TEST_F(ItemActionsCardWidgetTest, TheSelectedRowIsLitUpAndHasTheKeyboard) {
    EXPECT_TRUE(isLit(row(u"Paste"_qs)));
    EXPECT_TRUE(row(u"Paste"_qs).hasFocus());
    EXPECT_TRUE(send(VirtualKey::downArrow));
    EXPECT_FALSE(isLit(row(u"Paste"_qs)));
    EXPECT_TRUE(isLit(row(u"Copy"_qs)));
    EXPECT_TRUE(row(u"Copy"_qs).hasFocus());
}

TEST_F(ItemActionsCardWidgetTest, KeysThatTheCardPassesOnPressNoRow) {
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Select})
        QTest::keyClick(&row(u"Paste"_qs), key, Qt::ShiftModifier);
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ItemActionsCardWidgetTest, AClickRunsTheRow) {
    QTest::mouseClick(&row(u"Copy"_qs), Qt::LeftButton);
    EXPECT_EQ(done, QStringList{u"copy"_qs});
}

TEST_F(ItemActionsCardWidgetTest, AClickOnADisabledRowDoesNothing) {
    card().collectionsChanged({}, {});
    openCollections();
    QTest::mouseClick(&row(u"컬렉션 없음"_qs), Qt::LeftButton);
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(card().screen, CardScreen::collections);
    EXPECT_FALSE(row(u"컬렉션 없음"_qs).isEnabled());
}

TEST_F(ItemActionsCardWidgetTest, ARowBelowThePointerAtRestIsNotLitUpByItself) {
    auto& below = row(u"Pin"_qs);
    movePointer(below, {20, 10});
    now += 1s;
    movePointer(below, {20, 10});
    EXPECT_FALSE(isLit(below));
    EXPECT_TRUE(isLit(row(u"Paste"_qs)));
    movePointer(below, {21, 10});
    EXPECT_TRUE(isLit(below));
    EXPECT_FALSE(isLit(row(u"Paste"_qs)));
    EXPECT_TRUE(widget->isPointedAt());
}

TEST_F(ItemActionsCardWidgetTest, WhereThePointerHasLeftTheSelectionIsLitUpAgain) {
    now += 1s;
    auto& pointed = row(u"Pin"_qs);
    movePointer(pointed, {20, 10});
    movePointer(pointed, {22, 10});
    ASSERT_TRUE(isLit(pointed));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&pointed, &leave);
    EXPECT_FALSE(isLit(pointed));
    EXPECT_TRUE(isLit(row(u"Paste"_qs)));
}

TEST_F(ItemActionsCardWidgetTest, MoreRowsMakeItHigherAndItTells) {
    int told = 0;
    widget->onHeightChange = [&] { ++told; };
    const int before = widget->heightForContent();
    openCollections();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(widget->heightForContent(), before - 4 * ActionRowButton::rowHeight());
}

TEST_F(ItemActionsCardWidgetTest, WithManyCollectionsTheSelectedOneStaysInSight) {
    QStringList many;
    for (int i = 0; i < 40; ++i)
        many.append(QStringLiteral("Collection number %1").arg(i));
    open(many);
    openCollections();
    ASSERT_GT(widget->heightForContent(), widget->height());
    EXPECT_TRUE(isInSight(row(u"뒤로"_qs)));
    EXPECT_FALSE(isInSight(row(many.back())));
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(send(VirtualKey::downArrow));
    EXPECT_TRUE(isInSight(row(many.back())));
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(send(VirtualKey::upArrow));
    EXPECT_TRUE(isInSight(row(u"뒤로"_qs)));
}

TEST_F(ItemActionsCardWidgetTest, BackOnTheRootItBeginsAtTheTop) {
    QStringList many;
    for (int i = 0; i < 40; ++i)
        many.append(QString::number(i));
    open(many);
    openCollections();
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(send(VirtualKey::downArrow));
    EXPECT_TRUE(send(VirtualKey::escape));
    EXPECT_TRUE(isInSight(row(u"Paste"_qs)));
    EXPECT_TRUE(row(u"Paste"_qs).hasFocus());
}

// For programs that read to people

TEST_F(ItemActionsCardWidgetTest, ItIsAMenuWithItems) {
    auto* const item = QAccessible::queryAccessibleInterface(&row(u"Copy"_qs));
    EXPECT_EQ(item->role(), QAccessible::MenuItem);
    EXPECT_EQ(item->text(QAccessible::Name), u"Copy"_qs);
    EXPECT_EQ(item->text(QAccessible::Description), u"⌘C"_qs);
    EXPECT_EQ(item->parent()->role(), QAccessible::PopupMenu);
    EXPECT_EQ(item->parent()->text(QAccessible::Description), u"words"_qs);
    EXPECT_FALSE(item->state().checkable);
}

TEST_F(ItemActionsCardWidgetTest, WhetherTheItemIsInACollectionIsSaid) {
    card().actions.item->setCollections(std::vector{card().actions.allCollections[0]});
    openCollections();
    const auto spoken = [&](const QString& name) {
        return QAccessible::queryAccessibleInterface(&row(name))->text(QAccessible::Description);
    };
    const auto isChecked = [&](const QString& name) {
        return static_cast<bool>(QAccessible::queryAccessibleInterface(&row(name))->state().checked);
    };
    EXPECT_EQ(spoken(u"A"_qs), u"들어 있음"_qs);
    EXPECT_TRUE(isChecked(u"A"_qs));
    EXPECT_EQ(spoken(u"B"_qs), u"들어 있지 않음"_qs);
    EXPECT_FALSE(isChecked(u"B"_qs));
    EXPECT_EQ(spoken(u"뒤로"_qs), QString());
}

TEST_F(ItemActionsCardWidgetTest, AReaderCanRunARow) {
    QAccessible::queryAccessibleInterface(&row(u"Copy"_qs))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(done, QStringList{u"copy"_qs});
}

} // namespace
} // namespace kestrova
