#include "Kestrova/capture/widgets/ThumbnailPanelWidget.h"

#include "Kestrova/capture/CapturedImageFiles.h"
#include "Kestrova/capture/widgets/CapturedThumbnailItemView.h"
#include "Kestrova/capture/widgets/CapturedThumbnailStackView.h"
#include "Kestrova/capture/widgets/ThumbnailTile.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/FakeWindowManagement.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QEnterEvent>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class ThumbnailPanelWidgetTest : public testing::Test {
protected:
    template<typename Condition>
    static bool waitFor(Condition condition) {
        constexpr int deadlineMs = 10'000;
        return QTest::qWaitFor(condition, deadlineMs);
    }
    static ThumbnailEntry entry(const QString& name, const QColor& color = Qt::green,
                                QSize size = {400, 300}) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(color);
        return {.image = std::make_shared<CapturedPicture>(picture, "the PNG"),
                .pngData = "the PNG",
                .suggestedName = name};
    }
    void show(const std::vector<ThumbnailEntry>& entries) {
        panel->setContent({.entries = entries,
                           .onEntryClick = [this](QUuid id) { clicked.push_back(id); },
                           .onEntryEdit = [this](QUuid id) { edited.push_back(id); },
                           .onEntryClose = [this](QUuid id) { closed.push_back(id); }});
        const auto frame = [](int count) {
            return ScreenRect{.x = 300, .y = 20, .width = 256, .height = count * 188 + 8.0};
        };
        panel->setFrame(frame(static_cast<int>(entries.size())), frame(3));
        panel->orderFrontRegardless();
    }
    bool comesToRest() {
        return waitFor([this] { return !panel->view().isMoving(); });
    }
    CapturedThumbnailItemView& item(const ThumbnailEntry& entry) const {
        return *panel->view().item(entry.id);
    }
    static QAbstractButton& button(const CapturedThumbnailItemView& item, const QString& name) {
        const auto all = item.findChildren<QAbstractButton*>();
        return **std::ranges::find_if(all, [&](auto* each) { return each->accessibleName() == name; });
    }
    /// In the window.
    QPoint middleOf(const QWidget& widget) const { return widget.mapTo(panel.get(), widget.rect().center()); }
    void enter(QPoint place) const {
        QEnterEvent event(place, place, panel->mapToGlobal(place));
        QApplication::sendEvent(panel->windowHandle(), &event);
    }
    void moveMouse(QPoint place) const {
        // The toolkit drops a move to where the mouse is, be it from the test before.
        QTest::mouseMove(panel->windowHandle(), place + QPoint(1, 0));
        QTest::mouseMove(panel->windowHandle(), place);
    }
    void click(QPoint place) const { QTest::mouseClick(panel->windowHandle(), Qt::LeftButton, {}, place); }
    /// What the window shows, over that colour.
    QImage picture(const QColor& desktop) const {
        QImage drawn(panel->size(), QImage::Format_RGB32);
        drawn.fill(desktop);
        panel->render(&drawn, {}, {}, QWidget::DrawChildren | QWidget::IgnoreMask);
        return drawn;
    }

    QtMainQueue queue;
    QTemporaryDir directory;
    CapturedImageFiles files{queue, directory.path()};
    FakeWindowManagement screen;
    int rests = 0;
    std::vector<QUuid> clicked;
    std::vector<QUuid> edited;
    std::vector<QUuid> closed;
    ThumbnailEntry a = entry(u"a.png"_s);
    ThumbnailEntry b = entry(u"b.png"_s, Qt::blue);
    ThumbnailEntry c = entry(u"c.png"_s, Qt::red);
    std::unique_ptr<ThumbnailPanelWidget> panel = std::make_unique<ThumbnailPanelWidget>(
        ThumbnailPanelWidget::Surroundings{.mainQueue = queue,
                                           .windowManagement = screen,
                                           .files = files,
                                           .toolkitRect = FakeScreens::toolkitRect,
                                           .onRest = [this] { ++rests; }});
};

TEST_F(ThumbnailPanelWidgetTest, NeverTakesTheKeyboardNorAsksTheWindowManager) {
    EXPECT_TRUE(panel->windowFlags().testFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                               Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(panel->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_FALSE(panel->testAttribute(Qt::WA_QuitOnClose));
    show({a});
    for (const auto* const each : panel->findChildren<QWidget*>())
        EXPECT_EQ(each->focusPolicy(), Qt::NoFocus);
}

TEST_F(ThumbnailPanelWidgetTest, TheTilesStandOneAboveTheOtherOnTheLowerEdgeOfTheFrame) {
    show({a, b});
    const auto place = [this](const ThumbnailEntry& shown) {
        return item(shown).geometry().translated(panel->pos());
    };
    // The frame may become 256 x 572 at (300, 20), so its lower edge is at 592.
    EXPECT_EQ(place(a), QRect(308, 592 - 8 - 180 - 188, 240, 180));
    EXPECT_EQ(place(b), QRect(308, 592 - 8 - 180, 240, 180));
    EXPECT_FALSE(panel->view().isMoving()) << "what comes with the window is there at once";
}

TEST_F(ThumbnailPanelWidgetTest, AnotherOneMovesInFromAboveAndLiftsTheOthers) {
    show({a});
    const QRect lowest = item(a).geometry();
    show({a, b});
    EXPECT_TRUE(panel->view().isMoving());
    EXPECT_EQ(item(a).geometry(), lowest) << "it begins where it was";
    EXPECT_EQ(item(b).geometry(), lowest.translated(0, -180));
    ASSERT_TRUE(comesToRest());
    EXPECT_EQ(item(a).geometry(), lowest.translated(0, -188));
    EXPECT_EQ(item(b).geometry(), lowest);
}

TEST_F(ThumbnailPanelWidgetTest, OneThatGoesFadesAndTheOthersCloseUp) {
    show({a, b, c});
    ASSERT_TRUE(waitFor([this] { return !b.image->holdsPixels(); }));
    const QRect second = item(b).geometry();
    show({a, c});
    EXPECT_EQ(panel->view().item(b.id), nullptr);
    EXPECT_TRUE(panel->view().isMoving());
    const auto shade = picture(Qt::white).pixelColor(second.center());
    EXPECT_GT(shade.blue(), shade.red() + 100) << "it is still seen";
    ASSERT_TRUE(comesToRest());
    EXPECT_EQ(item(a).geometry(), second);
}

TEST_F(ThumbnailPanelWidgetTest, ThePictureComesFromAThreadAndItsPixelsGo) {
    show({a});
    const auto seen = [this] { return picture(Qt::white).pixelColor(middleOf(item(a))); };
    EXPECT_LT(seen().lightness(), 50) << "a dark plate until then";
    ASSERT_TRUE(waitFor([&] { return !a.image->holdsPixels(); }));
    EXPECT_EQ(seen(), QColor(Qt::green));
}

TEST_F(ThumbnailPanelWidgetTest, ALargePictureDoesNotHoldUpThisThread) {
    const auto large = entry(u"large.png"_s, Qt::red, {3840, 2160});
    show({a});
    ASSERT_TRUE(waitFor([&] { return !a.image->holdsPixels(); }));
    show({a, large});
    EXPECT_TRUE(large.image->holdsPixels()) << "its tile comes in a later turn";
    ASSERT_TRUE(waitFor([&] { return !large.image->holdsPixels(); }));
}

TEST_F(ThumbnailPanelWidgetTest, OnlyTheTilesTakePresses) {
    show({a, b});
    EXPECT_EQ(screen.limitedWindow, panel->winId());
    EXPECT_EQ(panel->windowNumber(), panel->winId());
    const QRect tile = item(a).geometry();
    const auto takes = [this](QPoint point) { return screen.presses.contains(point); };
    EXPECT_TRUE(takes(tile.center()));
    EXPECT_TRUE(takes(item(b).geometry().center()));
    EXPECT_FALSE(takes(tile.topLeft())) << "a corner";
    EXPECT_FALSE(takes({tile.center().x(), tile.bottom() + 4})) << "between them";
    EXPECT_FALSE(takes({tile.left() - 2, tile.center().y()})) << "the shadow";
    EXPECT_FALSE(takes({tile.center().x(), tile.top() - 30})) << "where a third one would stand";
    show({b});
    ASSERT_TRUE(comesToRest());
    EXPECT_FALSE(takes(tile.center()));
}

TEST_F(ThumbnailPanelWidgetTest, AClickIsToldOnceOnRelease) {
    show({a, b});
    QTest::mousePress(panel->windowHandle(), Qt::LeftButton, {}, middleOf(item(b)));
    EXPECT_THAT(clicked, IsEmpty());
    QTest::mouseRelease(panel->windowHandle(), Qt::LeftButton, {}, middleOf(item(b)));
    EXPECT_THAT(clicked, ElementsAre(b.id));
    QTest::mouseClick(panel->windowHandle(), Qt::RightButton, {}, middleOf(item(b)));
    EXPECT_THAT(clicked, ElementsAre(b.id));
    EXPECT_THAT(edited, IsEmpty());
    EXPECT_THAT(closed, IsEmpty());
}

TEST_F(ThumbnailPanelWidgetTest, ADragIsNoClick) {
    show({a});
    int drags = 0;
    panel->view().onEntryDrag = [&](const ThumbnailEntry& dragged, const QPixmap&, QPoint) {
        EXPECT_EQ(dragged.id, a.id);
        ++drags;
    };
    const QPoint from = middleOf(item(a));
    enter(from);
    QTest::mousePress(panel->windowHandle(), Qt::LeftButton, {}, from);
    moveMouse(from + QPoint(3, 3));
    EXPECT_EQ(drags, 0) << "a hand that shakes means none";
    moveMouse(from + QPoint(20, 10));
    moveMouse(from + QPoint(40, 20));
    EXPECT_EQ(drags, 1);
    EXPECT_FALSE(item(a).hovering()) << "the mouse belongs to the drag";
    QTest::mouseRelease(panel->windowHandle(), Qt::LeftButton, {}, from + QPoint(40, 20));
    EXPECT_THAT(clicked, IsEmpty());
    click(from);
    EXPECT_THAT(clicked, ElementsAre(a.id));
}

TEST_F(ThumbnailPanelWidgetTest, TheButtonsAppearUnderTheMouseAndTakeClicksOnlyThen) {
    show({a});
    auto& shown = item(a);
    auto& edit = button(shown, u"편집"_s);
    auto& close = button(shown, u"닫기"_s);
    EXPECT_EQ(shown.findChildren<QAbstractButton*>().size(), 2);
    EXPECT_EQ(edit.toolTip(), u"편집");
    EXPECT_EQ(close.toolTip(), u"닫기");
    EXPECT_EQ(close.geometry(), QRect(240 - 6 - 22, 6, 22, 22));
    EXPECT_EQ(edit.geometry(), QRect(240 - 6 - 22 - 6 - 22, 6, 22, 22));
    EXPECT_FALSE(shown.hovering());
    EXPECT_FALSE(shown.editButtonHover());
    EXPECT_FALSE(shown.closeButtonHover());

    enter(middleOf(shown));
    EXPECT_TRUE(shown.hovering());
    ASSERT_TRUE(waitFor([&] { return shown.isHoverLayerSettled(); }));
    moveMouse(middleOf(edit));
    EXPECT_TRUE(shown.hovering()) << "a button lies on the tile";
    EXPECT_TRUE(shown.editButtonHover());
    moveMouse(middleOf(close));
    EXPECT_FALSE(shown.editButtonHover());
    EXPECT_TRUE(shown.closeButtonHover());
    click(middleOf(edit));
    EXPECT_THAT(edited, ElementsAre(a.id));
    click(middleOf(close));
    EXPECT_THAT(closed, ElementsAre(a.id));
    EXPECT_THAT(clicked, IsEmpty());

    shown.endHover();
    EXPECT_FALSE(shown.closeButtonHover());
    click(middleOf(close));
    EXPECT_THAT(closed, ElementsAre(a.id));
    EXPECT_THAT(clicked, ElementsAre(a.id)) << "the click goes to the preview";
}

TEST_F(ThumbnailPanelWidgetTest, TheDiscsAreDarkerUnderTheMouse) {
    a = entry(u"white.png"_s, Qt::white);
    show({a});
    ASSERT_TRUE(waitFor([&] { return !a.image->holdsPixels(); }));
    auto& shown = item(a);
    auto& close = button(shown, u"닫기"_s);
    // Beside the symbol.
    const QPoint disc = close.mapTo(panel.get(), QPoint(11, 2));
    const auto shade = [&] { return picture(Qt::gray).pixelColor(disc).lightness(); };
    EXPECT_EQ(shade(), 255) << "nothing is seen of it";
    enter(middleOf(shown));
    ASSERT_TRUE(waitFor([&] { return shown.isHoverLayerSettled(); }));
    EXPECT_NEAR(shade(), 255 * 0.35, 3);
    moveMouse(middleOf(close));
    EXPECT_TRUE(shown.closeButtonHover());
    EXPECT_NEAR(shade(), 255 * 0.15, 3);
}

TEST_F(ThumbnailPanelWidgetTest, APreviewThatClosesItselfWithinItsOwnClickIsSafe) {
    show({a, b});
    auto& shown = item(a);
    panel->view().onEntryClose = [this](QUuid id) {
        closed.push_back(id);
        show({b});
    };
    const QPoint close = middleOf(button(shown, u"닫기"_s));
    enter(middleOf(shown));
    click(close);
    EXPECT_THAT(closed, ElementsAre(a.id));
    EXPECT_EQ(panel->view().item(a.id), nullptr);
    ASSERT_TRUE(comesToRest());
}

TEST_F(ThumbnailPanelWidgetTest, AClickOnATileThatSlidesPastMeansNothing) {
    show({a, b, c});
    const QPoint close = middleOf(button(item(b), u"닫기"_s));
    QCursor::setPos(panel->mapToGlobal(close));
    enter(close);
    click(close);
    ASSERT_THAT(closed, ElementsAre(b.id));
    show({a, c});
    const auto inStack = [this](QPoint place) { return panel->view().mapFrom(panel.get(), place); };
    ASSERT_TRUE(waitFor([&] { return item(a).geometry().contains(inStack(close)); }));
    ASSERT_TRUE(panel->view().isMoving());
    click(close);
    EXPECT_THAT(clicked, IsEmpty());
    ASSERT_TRUE(comesToRest());
    EXPECT_TRUE(item(a).closeButtonHover()) << "its button has come to lie under the mouse";
    click(close);
    EXPECT_THAT(closed, ElementsAre(b.id, a.id));
    EXPECT_THAT(clicked, IsEmpty());
}

TEST_F(ThumbnailPanelWidgetTest, OneThatCameUnderAMouseAtRestForgetsItAsTheMouseLeavesTheWindow) {
    show({a, b, c});
    const QPoint close = middleOf(button(item(b), u"닫기"_s));
    QCursor::setPos(panel->mapToGlobal(close));
    enter(close);
    click(close);
    show({a, c});
    ASSERT_TRUE(comesToRest());
    // The toolkit deletes the one that the mouse was on, and tells no other that it leaves.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(item(a).hovering());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(panel->windowHandle(), &leave);
    EXPECT_FALSE(item(a).hovering());
    show({a});
    ASSERT_TRUE(comesToRest());
    EXPECT_FALSE(item(a).hovering()) << "the mouse is gone, whatever the toolkit remembers";
}

TEST_F(ThumbnailPanelWidgetTest, OnlyOneIsHoveredAtATime) {
    show({a, b, c});
    const QPoint close = middleOf(button(item(b), u"닫기"_s));
    QCursor::setPos(panel->mapToGlobal(close));
    enter(close);
    click(close);
    show({a, c});
    ASSERT_TRUE(comesToRest());
    ASSERT_TRUE(item(a).hovering());
    moveMouse(middleOf(item(c)));
    EXPECT_TRUE(item(c).hovering());
    EXPECT_FALSE(item(a).hovering());
    moveMouse(middleOf(item(a)));
    EXPECT_TRUE(item(a).hovering());
    EXPECT_FALSE(item(c).hovering());
}

TEST_F(ThumbnailPanelWidgetTest, AssistiveProgramsFindAButtonForEachActionByName) {
    show({a});
    auto* const tile = QAccessible::queryAccessibleInterface(&item(a));
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(tile->text(QAccessible::Name), u"a.png");
    EXPECT_EQ(tile->role(), QAccessible::Button);
    ASSERT_EQ(tile->childCount(), 2);
    EXPECT_EQ(tile->child(0)->text(QAccessible::Name), u"편집");
    EXPECT_EQ(tile->child(1)->text(QAccessible::Name), u"닫기");
    tile->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    // The toolkit shows such a press for a moment.
    EXPECT_TRUE(waitFor([this] { return !closed.empty(); })) << "without a mouse over it";
    EXPECT_THAT(closed, ElementsAre(a.id));
    tile->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(waitFor([this] { return !clicked.empty(); }));
    EXPECT_THAT(clicked, ElementsAre(a.id));
}

TEST_F(ThumbnailPanelWidgetTest, FadesAndAValueThatIsSetTakesOver) {
    show({a});
    panel->animateAlpha(0, 10s, AnimationTiming::easeOut);
    ASSERT_TRUE(waitFor([this] { return panel->windowOpacity() < 1; }));
    panel->setAlpha(1);
    EXPECT_EQ(panel->windowOpacity(), 1);
    panel->animateAlpha(0, 30ms, AnimationTiming::easeOut);
    EXPECT_TRUE(waitFor([this] { return panel->windowOpacity() == 0; }));
}

TEST_F(ThumbnailPanelWidgetTest, BehindAScreenLockerItDoesNotShowAndNothingCanBePressed) {
    screen.covered = true;
    show({a});
    EXPECT_FALSE(panel->isVisible());
    EXPECT_NE(panel->windowNumber(), 0U);
    screen.covered = false;
    show({a});
    ASSERT_TRUE(panel->isVisible());
    screen.covered = true;
    click(middleOf(item(a)));
    button(item(a), u"편집"_s).click();
    button(item(a), u"닫기"_s).click();
    EXPECT_THAT(clicked, IsEmpty());
    EXPECT_THAT(edited, IsEmpty());
    EXPECT_THAT(closed, IsEmpty());
}

TEST_F(ThumbnailPanelWidgetTest, WithoutACompositorItHasTheShapeOfTheTilesAndNothingMoves) {
    screen.compositing = false;
    show({a});
    show({a, b});
    EXPECT_FALSE(panel->view().isMoving());
    const QRect tile = item(b).geometry();
    EXPECT_TRUE(panel->mask().contains(tile.center()));
    EXPECT_FALSE(panel->mask().contains(tile.topLeft()));
    EXPECT_EQ(panel->mask().boundingRect(), tile.united(item(a).geometry()));
    EXPECT_EQ(picture(Qt::white).pixelColor(tile.center().x(), tile.bottom() + 4), QColor(Qt::white))
        << "no shadow";
    panel->orderOut();
    screen.compositing = true;
    show({a, b});
    EXPECT_TRUE(panel->mask().isEmpty());
}

TEST_F(ThumbnailPanelWidgetTest, TheShadowLiesBelowAndEndsWithinTheWindow) {
    show({a});
    const auto drawn = picture(Qt::white);
    const auto shade = [&](int x, int y) { return 255 - drawn.pixelColor(x, y).lightness(); };
    const QRect tile = item(a).geometry();
    EXPECT_GT(shade(tile.center().x(), tile.bottom() + 8), shade(tile.center().x(), tile.top() - 8) + 10);
    for (int x = 0; x < drawn.width(); ++x)
        EXPECT_LE(shade(x, drawn.height() - 1), 2) << x;
    for (int y = 0; y < drawn.height(); ++y) {
        EXPECT_LE(shade(0, y), 2) << y;
        EXPECT_LE(shade(drawn.width() - 1, y), 2) << y;
    }
}

TEST_F(ThumbnailPanelWidgetTest, OrderedOutItHidesAndRests) {
    show({a});
    show({a, b});
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(panel->view().isMoving());
    EXPECT_EQ(rests, 1);
}

TEST_F(ThumbnailPanelWidgetTest, MayGoWhileAPictureIsBeingMade) {
    const auto large = entry(u"large.png"_s, Qt::red, {3840, 2160});
    show({large});
    panel.reset();
    EXPECT_TRUE(large.image->holdsPixels());
}

} // namespace
} // namespace kestrova
