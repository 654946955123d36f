#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QElapsedTimer>

#include <algorithm>
#include <set>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

// Of the shadow, around what is seen of the toast.
constexpr int kRoomAtTheSides = 24;
constexpr int kRoomAbove = 20;
constexpr int kRoomBelow = 28;

class ToastTest : public ShelfTest {
protected:
    std::optional<xcb_window_t> window() {
        const auto own = windows.ofProcess(program.process().pid());
        // The shelf is larger, and the tray's icon smaller.
        const auto found = std::ranges::find_if(own, [this](xcb_window_t candidate) {
            const QSize size = windows.frame(candidate).size();
            return size.width() > 100 && size.width() < 400 && size.height() < 150;
        });
        return found == own.end() ? std::nullopt : std::optional(*found);
    }
    bool isUp() { return window().has_value(); }
    bool comesUp() {
        return eventually([this] { return isUp(); });
    }
    bool goes() {
        return eventually([this] { return !isUp(); });
    }
    /// What is seen of it, without the shadow.
    QRect shape() {
        const auto found = window();
        return found ? windows.frame(*found).adjusted(kRoomAtTheSides, kRoomAbove, -kRoomAtTheSides,
                                                      -kRoomBelow)
                     : QRect();
    }
    /// Where it comes to rest under the shelf's place, on a display of 1280 x 800 without panels.
    bool comesToRest() {
        return eventually([this] {
            const QRect now = shape();
            return now.top() == kShelfBottom + 8 && std::abs(2 * now.x() + now.width() - 1280) <= 1;
        });
    }
    void startWithDuration(int milliseconds) {
        program.editDefault(u"hudDurationMs"_s, milliseconds);
        ASSERT_TRUE(program.start());
    }
    void moveWindow(xcb_window_t moved, QPoint place, QSize size) {
        session.run(u"xdotool"_s,
                    {u"windowsize"_s, u"--sync"_s, QString::number(moved), QString::number(size.width()),
                     QString::number(size.height()), u"windowmove"_s, u"--sync"_s, QString::number(moved),
                     QString::number(place.x()), QString::number(place.y())});
    }

    static constexpr int kShelfBottom = 120 + 540;
    static constexpr int kLongMs = 3000;

    Mouse mouse{session.display()};
};

TEST_F(ToastTest, ACopyElsewhereShowsItUnderTheShelfsPlaceAndItGoes) {
    ASSERT_TRUE(program.start());
    EXPECT_FALSE(isUp());
    realPrograms::copyFromTerminal(session, "words", u"UTF8_STRING"_s);
    ASSERT_TRUE(comesUp());
    EXPECT_TRUE(comesToRest()) << shape().top();
    EXPECT_TRUE(goes());
}

TEST_F(ToastTest, TheCommandsThatCopyAndPasteShowIt) {
    startWith({u"words"_s});
    EXPECT_FALSE(isUp()) << "a text that a script adds is no copy";
    ASSERT_EQ(program.command({u"copy"_s, u"1"_s}).exitStatus, 0);
    EXPECT_TRUE(comesUp());
    EXPECT_TRUE(goes());
    ASSERT_EQ(program.command({u"paste"_s, u"1"_s}).exitStatus, 0);
    EXPECT_TRUE(comesUp());
}

TEST_F(ToastTest, ItTakesNoLetterFromAPersonWhoTypes) {
    ASSERT_TRUE(program.start());
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::Mousepad);
    const QByteArray alphabet = "abcdefghijklmnopqrstuvwxyz";
    QByteArray typed;
    for (int copy = 0; copy < 5; ++copy) {
        const SelectionOwner owner(session.display(), plainText("copy " + QByteArray::number(copy)));
        for (const char letter : alphabet)
            keys.type(QByteArray(1, letter));
        typed += alphabet;
        ASSERT_TRUE(comesUp());
        EXPECT_TRUE(editor->hasKeyboard());
        EXPECT_NE(windows.active(), *window());
    }
    EXPECT_TRUE(editor->waitForText(QString::fromLatin1(typed)));
}

TEST_F(ToastTest, AClickOnItShowsTheShelf) {
    startWithDuration(kLongMs);
    const TypingTarget target(session, {u"target"_s});
    const SelectionOwner owner(session.display(), plainText("words"));
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(comesToRest());
    mouse.click(shape().center());
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_TRUE(goes());
    // And the keyboard goes back to where it was.
    keys.tap(keyAt::escape);
    EXPECT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
}

TEST_F(ToastTest, AClickOnItIsNoneBesideTheShelf) {
    startWithDuration(kLongMs);
    ASSERT_EQ(program.command({u"add"_s, u"words"_s}).exitStatus, 0);
    ASSERT_TRUE(shelf.open());
    ASSERT_EQ(program.command({u"copy"_s, u"1"_s}).exitStatus, 0);
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(comesToRest());
    mouse.click(shape().center());
    EXPECT_TRUE(goes());
    EXPECT_TRUE(throughout(300ms, [this] { return shelf.isUp(); }));
    EXPECT_TRUE(shelf.waitForKeyboard());
}

TEST_F(ToastTest, AClickOnItWhileTheShelfIsUpLeavesThePasteToTheEditor) {
    program.editDefault(u"hudDurationMs"_s, kLongMs);
    startWith({u"words"_s});
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    ASSERT_TRUE(shelf.open());
    ASSERT_EQ(program.command({u"copy"_s, u"1"_s}).exitStatus, 0);
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(comesToRest());
    mouse.click(shape().center());
    ASSERT_TRUE(goes());
    ASSERT_TRUE(shelf.waitForKeyboard());
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(editor->waitForText(u"words"_s));
    EXPECT_TRUE(shelf.waitForKeyboard());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(eventually([&] { return editor->hasKeyboard(); }));
}

TEST_F(ToastTest, ItDoesNotShowOverAScreenLocker) {
    startWithDuration(kLongMs);
    KeyReceiver locker(session.display());
    locker.cover(locker.screen());
    {
        const SelectionOwner owner(session.display(), plainText("behind it"));
        ASSERT_TRUE(program.waitForNewest(u"behind it"_s));
        EXPECT_TRUE(throughout(500ms, [this] { return !isUp(); }));
    }
    locker.cover(QRect(0, 0, 100, 100));
    const SelectionOwner owner(session.display(), plainText("before it"));
    EXPECT_TRUE(comesUp());
}

TEST_F(ToastTest, AClickOnItIsNoneBehindAScreenLockerThatLetsItThrough) {
    startWithDuration(kLongMs);
    KeyReceiver locker(session.display());
    const SelectionOwner owner(session.display(), plainText("words"));
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(comesToRest());
    const QPoint place = shape().center();
    const auto toast = *window();
    locker.cover(locker.screen());
    // As a person cannot, but another client might.
    const XConnection x(session.display());
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(x.get(), toast, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(x.get());
    ASSERT_TRUE(eventually([&] { return windows.colorAt(place - QPoint(0, 10)).lightness() < 60; }));
    mouse.click(place);
    EXPECT_TRUE(throughout(500ms, [this] { return !shelf.isUp(); }));
}

TEST_F(ToastTest, ItStandsAboveTheShelf) {
    startWithDuration(kLongMs);
    ASSERT_EQ(program.command({u"add"_s, u"words"_s}).exitStatus, 0);
    ASSERT_TRUE(shelf.open());
    ASSERT_EQ(program.command({u"copy"_s, u"1"_s}).exitStatus, 0);
    ASSERT_TRUE(comesUp());
    EXPECT_EQ(windows.ofProcess(program.process().pid()).back(), *window());
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ToastTest, ItStaysForAsLongAsThePersonWishes) {
    const auto staysFor = [this](int milliseconds) {
        program.editDefault(u"hudDurationMs"_s, milliseconds);
        EXPECT_TRUE(program.start());
        const SelectionOwner owner(session.display(), plainText(QByteArray::number(milliseconds)));
        EXPECT_TRUE(comesUp());
        QElapsedTimer time;
        time.start();
        EXPECT_TRUE(goes());
        const auto stayed = time.elapsed();
        EXPECT_TRUE(program.quit());
        return stayed;
    };
    // Seen a moment late, and longer on a loaded machine.
    constexpr int kSeenLate = 200;
    const auto briefly = staysFor(500);
    EXPECT_GE(briefly, 500 - kSeenLate);
    const auto longer = staysFor(kLongMs);
    EXPECT_GE(longer, kLongMs - kSeenLate);
    EXPECT_LT(briefly, longer);
}

TEST_F(ToastTest, CopiesThatFollowEachOtherMakeOneWindow) {
    startWithDuration(kLongMs);
    std::set<xcb_window_t> seen;
    for (int copy = 0; copy < 5; ++copy) {
        const SelectionOwner owner(session.display(), plainText("copy " + QByteArray::number(copy)));
        ASSERT_TRUE(program.waitForNewest(u"copy %1"_s.arg(copy)));
        ASSERT_TRUE(comesUp());
        for (const xcb_window_t own : windows.ofProcess(program.process().pid()))
            seen.insert(own);
    }
    EXPECT_EQ(seen.size(), 1U);
}

TEST_F(ToastTest, AClickOnItsShadowReachesTheWindowBelow) {
    startCompositor();
    startWithDuration(kLongMs);
    const TypingTarget target(session, {u"below"_s, u"elsewhere"_s});
    moveWindow(target.window(0), {400, 560}, {480, 200});
    moveWindow(target.window(1), {10, 10}, {100, 100});
    const SelectionOwner owner(session.display(), plainText("words"));
    ASSERT_TRUE(comesUp());
    ASSERT_TRUE(comesToRest());
    const QRect toast = shape();
    for (const QPoint place :
         {QPoint(toast.center().x(), toast.bottom() + 4), QPoint(toast.center().x(), toast.top() - 4),
          QPoint(toast.left() - 4, toast.center().y()), QPoint(toast.right() + 4, toast.center().y()),
          toast.topLeft()}) {
        ASSERT_TRUE(windows.frame(target.window(0)).contains(place));
        ASSERT_TRUE(windows.activate(target.window(1)));
        ASSERT_EQ(program.command({u"copy"_s, u"1"_s}).exitStatus, 0);
        ASSERT_TRUE(comesUp());
        ASSERT_TRUE(windows.frame(*window()).contains(place)) << "it is within the toast's window";
        mouse.click(place);
        EXPECT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
        EXPECT_FALSE(shelf.isUp());
    }
}

TEST_F(ToastTest, TheTraysIconFadesAndComesBackWithIt) {
    session.start({.program = u"trayer"_s, .arguments = {u"--edge"_s, u"bottom"_s}});
    ASSERT_TRUE(program.start());
    const auto icon = [this] {
        const auto own = windows.ofProcess(program.process().pid());
        const auto found = std::ranges::find_if(
            own, [this](xcb_window_t candidate) { return windows.frame(candidate).width() <= 100; });
        return found == own.end() ? QRect() : windows.frame(*found);
    };
    ASSERT_TRUE(eventually([&] { return icon().isValid(); }));
    const XConnection x(session.display());
    const auto pixels = [&] {
        const QRect area = icon();
        const XReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            x.get(),
            xcb_get_image(x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, x.root(), static_cast<std::int16_t>(area.x()),
                          static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                          static_cast<std::uint16_t>(area.height()), ~0U),
            nullptr));
        return image ? QByteArray(reinterpret_cast<const char*>(xcb_get_image_data(image.get())),
                                  xcb_get_image_data_length(image.get()))
                     : QByteArray();
    };
    // Until the tray has drawn it.
    QByteArray atRest;
    ASSERT_TRUE(eventually([&] {
        atRest = pixels();
        return !atRest.isEmpty() && throughout(500ms, [&] { return pixels() == atRest; });
    }));
    const SelectionOwner owner(session.display(), plainText("words"));
    EXPECT_TRUE(eventually([&] { return pixels() != atRest; }));
    EXPECT_TRUE(eventually([&] { return pixels() == atRest; }));
}

} // namespace
} // namespace kestrova::test
