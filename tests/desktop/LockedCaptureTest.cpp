#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"
#include "tests/desktop/XConnection.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class LockedCaptureTest : public ShelfTest {
protected:
    // The machine may have nothing to play sounds on, and the log tells that.
    LockedCaptureTest() { program.editDefault(u"captureSoundEnabled"_s, false); }

    ProcessResult capture(const QString& what) { return program.command({u"capture"_s, what}); }
};

TEST_F(LockedCaptureTest, BehindAScreenLockerNoCommandCaptures) {
    ASSERT_TRUE(program.start());
    KeyReceiver locker(session.display());
    locker.cover(locker.screen());
    for (const auto& what : {u"area"_s, u"window"_s, u"screen"_s}) {
        const auto result = capture(what);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.standardError, "kestrova: the screen is locked or cannot be captured\n");
    }
    locker.cover({0, 0, 100, 100});
    ASSERT_EQ(capture(u"screen"_s).exitStatus, 0);
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_TRUE(program.quit());
    EXPECT_EQ(program.process().standardError(), QByteArray());
}

TEST_F(LockedCaptureTest, AWindowThatFillsTheScreenIsNoLocker) {
    // As a game's or a film's, which the window manager handles.
    const TypingTarget film(session, {u"film"_s});
    const XConnection x(session.display());
    const auto fullScreen = x.atom("_NET_WM_STATE_FULLSCREEN");
    xcb_client_message_event_t wish{};
    wish.response_type = XCB_CLIENT_MESSAGE;
    wish.format = 32;
    wish.window = film.window(0);
    wish.type = x.atom("_NET_WM_STATE");
    wish.data.data32[0] = 1;
    wish.data.data32[1] = fullScreen;
    xcb_send_event(x.get(), 0, x.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&wish));
    xcb_flush(x.get());
    ASSERT_TRUE(eventually([&] { return windows.frame(film.window(0)) == QRect(0, 0, 1280, 800); }));
    ASSERT_TRUE(program.start());
    ASSERT_EQ(capture(u"screen"_s).exitStatus, 0);
    EXPECT_TRUE(program.waitForRows(1));
}

} // namespace
} // namespace kestrova::test
