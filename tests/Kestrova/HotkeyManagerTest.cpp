#include "Kestrova/HotkeyManager.h"

#include "tests/support/FakeHotKeys.h"
#include "tests/support/FakeKeyboardLayout.h"
#include "tests/support/FakeMenuTracking.h"
#include "tests/support/InMemoryUserDefaults.h"

#include <gmock/gmock.h>

#include <optional>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t commandShift = 0x300;

class HotkeyManagerTest : public testing::Test {
protected:
    void fillClosures() {
        manager->onTogglePanel = [this] { calls.emplace_back("togglePanel"); };
        manager->onCaptureArea = [this] { calls.emplace_back("captureArea"); };
        manager->onCaptureFullScreen = [this] { calls.emplace_back("captureFullScreen"); };
        manager->onCaptureWindow = [this] { calls.emplace_back("captureWindow"); };
    }
    void pressOnly(std::uint32_t keyCode) {
        for (const auto& [reference, hotKey] : host.live)
            if (hotKey.keyCode == keyCode && hotKey.carbonModifiers == commandShift)
                host.handler({HotKeyEvent::Kind::hotKeyPressed, hotKey.identifier, 0, 0});
    }

    FakeHotKeys host;
    InMemoryUserDefaults defaults;
    FakeKeyboardLayout layout;
    FakeMenuTracking menuTracking;
    KeyboardShortcuts shortcuts{host, defaults, layout, menuTracking};
    std::optional<HotkeyManager> manager{std::in_place, shortcuts};
    std::vector<std::string> calls;
};

TEST_F(HotkeyManagerTest, FourNamesHaveTheirDefaultsInOrder) {
    EXPECT_THAT(host.combinations(), ElementsAre(FakeHotKeys::Combination{9, commandShift},
                                                 FakeHotKeys::Combination{21, commandShift},
                                                 FakeHotKeys::Combination{20, commandShift},
                                                 FakeHotKeys::Combination{22, commandShift}));
    const auto stored = [&](const QString& name) {
        return defaults.text(QStringLiteral("KeyboardShortcuts_") + name);
    };
    EXPECT_EQ(stored(QStringLiteral("togglePanel")),
              QStringLiteral(R"({"carbonKeyCode":9,"carbonModifiers":768})"));
    EXPECT_EQ(stored(QStringLiteral("captureArea")),
              QStringLiteral(R"({"carbonKeyCode":21,"carbonModifiers":768})"));
    EXPECT_EQ(stored(QStringLiteral("captureFullScreen")),
              QStringLiteral(R"({"carbonKeyCode":20,"carbonModifiers":768})"));
    EXPECT_EQ(stored(QStringLiteral("captureWindow")),
              QStringLiteral(R"({"carbonKeyCode":22,"carbonModifiers":768})"));
}

TEST_F(HotkeyManagerTest, EachPressCallsItsClosureBeforeTheRelease) {
    fillClosures();
    for (const std::uint32_t keyCode : {9u, 21u, 20u, 22u})
        pressOnly(keyCode);
    EXPECT_THAT(calls, ElementsAre("togglePanel", "captureArea", "captureFullScreen", "captureWindow"));
}

TEST_F(HotkeyManagerTest, TheReleaseCallsNothing) {
    fillClosures();
    EXPECT_TRUE(host.press(9, commandShift));
    EXPECT_THAT(calls, ElementsAre("togglePanel"));
}

TEST_F(HotkeyManagerTest, APressBeforeTheClosureIsSetDoesNothing) {
    EXPECT_TRUE(host.press(9, commandShift));
    fillClosures();
    EXPECT_THAT(calls, IsEmpty());
    host.press(9, commandShift);
    EXPECT_THAT(calls, ElementsAre("togglePanel"));
}

TEST_F(HotkeyManagerTest, APressAfterTheManagerHasGoneDoesNothing) {
    fillClosures();
    manager.reset();
    EXPECT_TRUE(host.press(9, commandShift));
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(HotkeyManagerTest, AChangedShortcutCallsTheSameClosure) {
    fillClosures();
    shortcuts.setShortcut(Shortcut::of(Key::k, ModifierFlags::option), HotkeyNames(shortcuts).captureArea);
    EXPECT_FALSE(host.press(21, commandShift));
    EXPECT_TRUE(host.press(40, 0x800));
    EXPECT_THAT(calls, ElementsAre("captureArea"));
}

TEST_F(HotkeyManagerTest, NamesMadeAgainAreTheSame) {
    const HotkeyNames again(shortcuts);
    EXPECT_EQ(again.togglePanel, manager->names().togglePanel);
    EXPECT_EQ(again.captureWindow, manager->names().captureWindow);
    EXPECT_EQ(host.live.size(), 4u);
}

} // namespace
} // namespace kestrova
