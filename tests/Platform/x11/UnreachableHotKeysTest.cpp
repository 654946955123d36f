#include "Platform/x11/X11HotKeys.h"
#include "Platform/x11/X11Keymap.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

/// The toolkit has its display, and the connection of the hot keys could not be made.
class UnreachableHotKeysTest : public ::testing::Test {
protected:
    UnreachableHotKeysTest() { qputenv("DISPLAY", "nowhere"); }
    ~UnreachableHotKeysTest() override {
        if (m_display.isNull())
            qunsetenv("DISPLAY");
        else
            qputenv("DISPLAY", m_display);
    }

private:
    const QByteArray m_display = qgetenv("DISPLAY");

protected:
    ManualMainQueue queue;
    X11Keymap keymap;
};

TEST_F(UnreachableHotKeysTest, NoKeyIsTappedOrWatched) {
    X11HotKeys hotKeys{queue, keymap};
    EXPECT_EQ(hotKeys.tapKeyDowns([](std::uint16_t) {}), nullptr);
    EXPECT_EQ(hotKeys.addGlobalKeyDownMonitor([](std::uint16_t) {}), nullptr);
    EXPECT_EQ(hotKeys.tapKeyDowns([](std::uint16_t) {}), nullptr);
}

TEST_F(UnreachableHotKeysTest, NoHotKeyIsHad) {
    X11HotKeys hotKeys{queue, keymap};
    const LogCapture log;
    EXPECT_FALSE(hotKeys.installHandler([](const HotKeyEvent&) { return 0; }));
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("[HotKeys] This X server cannot tell of hot keys")});
    EXPECT_EQ(hotKeys.registerHotKey(9, 0x300, {.number = 7}).status, HotKeys::noSuchKey);
}

} // namespace
} // namespace kestrova
