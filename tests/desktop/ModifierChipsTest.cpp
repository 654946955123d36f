#include "tests/desktop/Mouse.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/ShelfElements.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QFile>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr xcb_keycode_t kRightAlt = 108;

/// The keys that the shelf shows as long as a modifier is held, as a person sees them.
class ModifierChipsTest : public ShelfTest {
protected:
    void SetUp() override {
        startWith({u"older"_s, u"newest"_s});
        mouse.moveTo(kOutside);
        ASSERT_TRUE(shelf.open());
        ASSERT_TRUE(comesToRest());
        atRest = look();
        ASSERT_FALSE(atRest.isNull());
    }

    /// The sidebar's rows, the chips and the first rows of the list, without the search's blinking caret.
    QImage look() { return screen.of(QRect(shelf.frame().topLeft() + QPoint(1, 60), QSize(478, 200))); }
    bool comesToRest() {
        return eventually([this] {
            const QImage now = look();
            return !now.isNull() && throughout(400ms, [&] { return look() == now; });
        });
    }
    /// Waits until the keys are shown, and have come to rest.
    bool showsKeys() {
        return eventually([this] { return look() != atRest; }) && comesToRest() && look() != atRest;
    }
    /// Waits until nothing shows any more that a modifier was held.
    bool showsNoKeys() {
        return eventually(
            [this] { return look() == atRest && throughout(400ms, [this] { return look() == atRest; }); });
    }
    void press(const KeyPresser::Chord& modifiers) {
        for (const xcb_keycode_t key : modifiers)
            keys.press(key);
    }
    void release(const KeyPresser::Chord& modifiers) {
        for (const xcb_keycode_t key : modifiers)
            keys.release(key);
    }
    /// The window manager's switcher stands in the middle of the display.
    QImage middle() const { return screen.of({600, 380, 80, 40}); }
    /// On the sidebar, below its rows, where a press changes nothing.
    QPoint placeOfNoUse() const { return shelf.frame().topLeft() + QPoint(100, 400); }
    /// On the first row of the list.
    QPoint placeOfRow() const { return shelf.frame().topLeft() + QPoint(300, 122); }
    /// As on desktops whose window manager takes no presses that are made with Alt.
    void leavePressesWithAlt() {
        QFile standard(u"/etc/xdg/openbox/rc.xml"_s);
        ASSERT_TRUE(standard.open(QIODevice::ReadOnly));
        session.writeFile(u"config/openbox/rc.xml"_s,
                          standard.readAll().replace("button=\"A-", "button=\"W-"));
        ASSERT_EQ(session.run(u"openbox"_s, {u"--reconfigure"_s}).exitStatus, 0);
    }

    // A place of the bare desktop.
    static constexpr QPoint kOutside{1270, 790};
    static inline const KeyPresser::Chord kOption{keyAt::alt};
    static inline const KeyPresser::Chord kControl{keyAt::control, keyAt::shift};
    static inline const KeyPresser::Chord kCommand{keyAt::control};

    Mouse mouse{session.display()};
    ScreenPicture screen{session.display()};
    QImage atRest;
};

TEST_F(ModifierChipsTest, EachModifierShowsItsKeysUntilItIsReleased) {
    std::vector<QImage> seen{atRest};
    for (const auto& modifiers : {kOption, kControl, kCommand}) {
        press(modifiers);
        EXPECT_TRUE(showsKeys());
        for (const QImage& other : seen)
            EXPECT_NE(look(), other);
        seen.push_back(look());
        release(modifiers);
        EXPECT_TRUE(showsNoKeys());
    }
}

TEST_F(ModifierChipsTest, AReleaseInTheMenuOfARowIsNoticed) {
    leavePressesWithAlt();
    for (const auto& modifiers : {kOption, kControl, kCommand}) {
        press(modifiers);
        EXPECT_TRUE(showsKeys());
        // The window manager may still take the first one.
        ASSERT_TRUE(eventually([this] {
            mouse.click(placeOfRow(), Mouse::Button::Right);
            return eventually([this] { return shelf.menus().size() == 1; }, 500ms);
        }));
        release(modifiers);
        keys.tap(keyAt::escape);
        EXPECT_TRUE(shelf.waitForMenus(0));
        mouse.moveTo(kOutside);
        EXPECT_TRUE(showsNoKeys());
    }
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ModifierChipsTest, AReleaseInTheSwitcherIsNoticed) {
    const TypingTarget target(session, {u"first"_s, u"second"_s});
    ASSERT_TRUE(windows.activate(*shelf.window()));
    ASSERT_TRUE(showsNoKeys());
    press(kOption);
    EXPECT_TRUE(showsKeys());
    const QImage withoutSwitcher = middle();
    keys.tap(keyAt::tab);
    ASSERT_TRUE(eventually([&] { return middle() != withoutSwitcher; }));
    release(kOption);
    ASSERT_TRUE(eventually([this] { return !shelf.hasKeyboard(); }));
    ASSERT_TRUE(shelf.isUp());
    ASSERT_TRUE(windows.activate(*shelf.window()));
    EXPECT_TRUE(showsNoKeys());
}

TEST_F(ModifierChipsTest, AReleaseInAnotherWindowIsNoticed) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(windows.activate(*shelf.window()));
    ASSERT_TRUE(showsNoKeys());
    for (const auto& modifiers : {kCommand, kControl, kOption}) {
        press(modifiers);
        EXPECT_TRUE(showsKeys());
        ASSERT_TRUE(windows.activate(target.window(0)));
        release(modifiers);
        ASSERT_TRUE(shelf.isUp());
        mouse.click(placeOfNoUse());
        ASSERT_TRUE(shelf.waitForKeyboard());
        EXPECT_TRUE(showsNoKeys());
    }
}

TEST_F(ModifierChipsTest, AReleaseWhileTheShelfIsHiddenIsNoticed) {
    // The shortcut's own modifier counts in the shelf.
    keys.press(keyAt::super);
    EXPECT_TRUE(showsKeys());
    keys.chord({keyAt::shift, keyAt::v});
    ASSERT_TRUE(shelf.waitUntilGone());
    keys.release(keyAt::super);
    pressShortcut();
    ASSERT_TRUE(shelf.waitForKeyboard());
    EXPECT_TRUE(showsNoKeys());

    for (const auto& modifiers : {kOption, kControl, kCommand}) {
        press(modifiers);
        EXPECT_TRUE(showsKeys());
        ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
        ASSERT_TRUE(shelf.waitUntilGone());
        release(modifiers);
        ASSERT_TRUE(shelf.open());
        EXPECT_TRUE(showsNoKeys());
    }
}

TEST_F(ModifierChipsTest, OfTwoLikeModifiersTheLastOneCounts) {
    press({keyAt::alt, kRightAlt});
    ASSERT_TRUE(showsKeys());
    const QImage held = look();
    for (const xcb_keycode_t first : {keyAt::alt, kRightAlt}) {
        keys.release(first);
        EXPECT_TRUE(throughout(600ms, [&] { return look() == held; })) << int{first};
        keys.press(first);
        EXPECT_TRUE(throughout(200ms, [&] { return look() == held; })) << int{first};
    }
    keys.release(kRightAlt);
    EXPECT_TRUE(throughout(600ms, [&] { return look() == held; }));
    keys.release(keyAt::alt);
    EXPECT_TRUE(showsNoKeys());
}

TEST_F(ModifierChipsTest, AReleaseOverTheCollectionSheetIsNoticed) {
    for (const auto& modifiers : {kCommand, kControl}) {
        press(modifiers);
        EXPECT_TRUE(showsKeys());
        const QImage held = look();
        // The button at the foot of the sidebar. The sheet makes everything else dark.
        mouse.click(shelf.frame().bottomLeft() + QPoint(60, -20));
        ASSERT_TRUE(eventually([&] { return look() != held; }));
        ASSERT_TRUE(comesToRest());
        const QImage covered = look();
        release(modifiers);
        keys.tap(keyAt::escape);
        mouse.moveTo(kOutside);
        EXPECT_TRUE(eventually([&] { return look() != covered; }));
        EXPECT_TRUE(showsNoKeys());
        EXPECT_TRUE(shelf.hasKeyboard());
    }
}

} // namespace
} // namespace kestrova::test
