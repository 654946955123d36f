#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"

#include "KeyboardShortcuts/KeyText.h"
#include "tests/support/FakeHotKeys.h"
#include "tests/support/FakeKeyboardLayout.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace kestrova {
namespace {

using Listening = CarbonKeyboardShortcuts::Listening;
using Calls = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t commandShift = ModifierFlags::command | ModifierFlags::shift;

class CarbonKeyboardShortcutsTest : public testing::Test {
protected:
    void add(const Shortcut& shortcut) { carbon->registerShortcut(shortcut, note("down"), note("up")); }
    CarbonKeyboardShortcuts::Action note(const std::string& what) {
        return [this, what](const Shortcut& shortcut) {
            calls.push_back(what + " " + std::to_string(shortcut.carbonKeyCode));
        };
    }
    int tell(HotKeyEvent::Kind kind, HotKeyIdentifier identifier) {
        return host.handler({kind, identifier, 0, 0});
    }
    std::vector<std::string> logSince(std::size_t from) const {
        return {host.log.begin() + static_cast<std::ptrdiff_t>(from), host.log.end()};
    }

    const Shortcut v{9, 768};
    const Shortcut four{21, 768};
    FakeHotKeys host;
    FakeKeyboardLayout layout;
    KeyText keyText{layout, QLocale(QLocale::English)};
    std::optional<CarbonKeyboardShortcuts> carbon{std::in_place, host, keyText};
    Calls calls;
};

TEST_F(CarbonKeyboardShortcutsTest, TheFirstRegistrationInstallsTheHandlerAndListens) {
    add(v);
    EXPECT_THAT(host.log, ElementsAre("register 1", "install", "hot keys on", "raw keys off"));
    add(four);
    EXPECT_EQ(std::ranges::count(host.log, "install"), 1);
}

TEST_F(CarbonKeyboardShortcutsTest, AnIdentifierIsTheSignatureWithANumberThatIsNeverUsedAgain) {
    add(v);
    carbon->unregisterShortcut(v);
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    {
        const LogCapture log;
        add(v);
    }
    host.refused.clear();
    add(four);
    ASSERT_EQ(host.live.size(), 1u);
    const auto& live = host.live.begin()->second;
    EXPECT_EQ(live, (FakeHotKeys::Registered{21, 768, {0x53534B53, 3}}));
    ASSERT_EQ(carbon->hotKeys().size(), 1u);
    const auto& [number, entry] = *carbon->hotKeys().begin();
    EXPECT_EQ(number, 3u);
    EXPECT_EQ(entry.carbonHotKeyId, 3u);
    EXPECT_EQ(entry.shortcut(), four);
    EXPECT_TRUE(entry.carbonHotKey);
}

TEST_F(CarbonKeyboardShortcutsTest, ARefusalIsLoggedAndLeavesNoEntry) {
    const LogCapture log;
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    add(v);
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Error registering hotkey ⇧⌘V:-9878")}));
    EXPECT_THAT(carbon->hotKeys(), IsEmpty());
    EXPECT_THAT(host.log, ElementsAre("register 1"));
    EXPECT_EQ(carbon->refusals(), (QHash<Shortcut, int>{{v, HotKeys::alreadyHeld}}));
}

TEST_F(CarbonKeyboardShortcutsTest, AnAnswerWithoutAReferenceIsARefusal) {
    const LogCapture log;
    host.refused[{9, 768}] = {0, std::nullopt};
    add(v);
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Error registering hotkey ⇧⌘V:0")}));
    EXPECT_THAT(carbon->hotKeys(), IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, AStatusIsARefusalEvenWithAReference) {
    const LogCapture log;
    host.refused[{9, 768}] = {-1, HotKeyReference{7}};
    add(v);
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Error registering hotkey ⇧⌘V:-1")}));
    EXPECT_THAT(carbon->hotKeys(), IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, NumbersBeyond32BitsNeverReachTheHost) {
    const LogCapture log;
    add({std::int64_t{1} << 32, 768});
    add({9, -1});
    EXPECT_THAT(host.log, IsEmpty());
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_EQ(log.lines().value(0), QStringLiteral("Error registering hotkey ⇧⌘\uFFFD:-9868"));
}

TEST_F(CarbonKeyboardShortcutsTest, ARefusalIsForgottenOnceItIsWithdrawnOrTaken) {
    const LogCapture log;
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    add(v);
    carbon->unregisterShortcut(v);
    EXPECT_THAT(carbon->refusals(), IsEmpty());
    add(v);
    host.refused.clear();
    add(v);
    EXPECT_THAT(carbon->refusals(), IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, AHandlerThatCannotBeInstalledIsTriedAgainAtTheNextRegistration) {
    host.canInstall = false;
    add(v);
    EXPECT_THAT(host.log, ElementsAre("register 1", "install"));
    EXPECT_EQ(carbon->hotKeys().size(), 1u);
    // Without a handler there is nothing to put in step.
    carbon->setListening(Listening::rawKeys);
    EXPECT_EQ(host.log.size(), 2u);
    carbon->setListening(Listening::hotKeys);
    host.canInstall = true;
    add(four);
    EXPECT_TRUE(host.press(9, 768));
    EXPECT_THAT(calls, ElementsAre("down 9", "up 9"));
}

TEST_F(CarbonKeyboardShortcutsTest, UnregisteringTakesEveryEntryOfThatShortcut) {
    add(v);
    add(four);
    add(v);
    carbon->unregisterShortcut(v);
    EXPECT_THAT(host.combinations(), ElementsAre(FakeHotKeys::Combination{21, 768}));
    EXPECT_EQ(carbon->hotKeys().size(), 1u);
    carbon->unregisterShortcut({9, 256});
    EXPECT_EQ(carbon->hotKeys().size(), 1u);
}

TEST_F(CarbonKeyboardShortcutsTest, ListeningToNothingSetsTheEntriesAside) {
    add(v);
    add(four);
    const auto before = host.log.size();
    carbon->setListening(Listening::nothing);
    EXPECT_THAT(logSince(before),
                ElementsAre("unregister 1", "unregister 2", "hot keys off", "raw keys off"));
    ASSERT_EQ(carbon->hotKeys().size(), 2u);
    for (const auto& [number, entry] : carbon->hotKeys())
        EXPECT_FALSE(entry.carbonHotKey);
    EXPECT_EQ(host.pressRaw(9, commandShift), HotKeys::eventNotHandled);
}

TEST_F(CarbonKeyboardShortcutsTest, ListeningToRawKeysSetsTheEntriesAsideAndFindsThemByKey) {
    add(v);
    const auto before = host.log.size();
    carbon->setListening(Listening::rawKeys);
    EXPECT_THAT(logSince(before), ElementsAre("unregister 1", "hot keys off", "raw keys on"));
    EXPECT_EQ(host.pressRaw(9, commandShift), 0);
    EXPECT_THAT(calls, ElementsAre("down 9", "up 9"));
}

TEST_F(CarbonKeyboardShortcutsTest, ListeningToHotKeysAgainRegistersEachUnderItsOwnNumber) {
    add(v);
    add(four);
    carbon->setListening(Listening::nothing);
    const auto before = host.log.size();
    carbon->setListening(Listening::hotKeys);
    EXPECT_THAT(logSince(before), ElementsAre("register 1", "register 2", "hot keys on", "raw keys off"));
    EXPECT_TRUE(host.press(21, 768));
    EXPECT_THAT(calls, ElementsAre("down 21", "up 21"));
    // What is live is not registered twice.
    carbon->setListening(Listening::hotKeys);
    EXPECT_EQ(host.live.size(), 2u);
}

TEST_F(CarbonKeyboardShortcutsTest, OneThatIsRefusedTheSecondTimeIsLoggedAndRemoved) {
    add(v);
    add(four);
    carbon->setListening(Listening::rawKeys);
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    const LogCapture log;
    carbon->setListening(Listening::hotKeys);
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Error registering hotkey ⇧⌘V:-9878")}));
    ASSERT_EQ(carbon->hotKeys().size(), 1u);
    EXPECT_EQ(carbon->hotKeys().begin()->first, 2u);
    EXPECT_TRUE(carbon->refusals().contains(v));
}

TEST_F(CarbonKeyboardShortcutsTest, AShortcutThatComesWhileNothingIsListenedToWaits) {
    add(v);
    carbon->setListening(Listening::nothing);
    add(four);
    EXPECT_THAT(host.live, IsEmpty());
    carbon->setListening(Listening::hotKeys);
    EXPECT_EQ(host.live.size(), 2u);
}

TEST_F(CarbonKeyboardShortcutsTest, SettingAsideTwiceUnregistersOnce) {
    add(v);
    carbon->setListening(Listening::nothing);
    carbon->setListening(Listening::rawKeys);
    EXPECT_EQ(std::ranges::count(host.log, "unregister 1"), 1);
    carbon->unregisterShortcut(v);
    EXPECT_EQ(std::ranges::count(host.log, "unregister what is not registered"), 0);
    EXPECT_THAT(carbon->hotKeys(), IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, APressAndAReleaseCallTheirClosures) {
    add(v);
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyPressed, {0x53534B53, 1}), 0);
    EXPECT_THAT(calls, ElementsAre("down 9"));
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyReleased, {0x53534B53, 1}), 0);
    EXPECT_THAT(calls, ElementsAre("down 9", "up 9"));
}

TEST_F(CarbonKeyboardShortcutsTest, HotKeysThatAreNotOursAreNotHandled) {
    add(v);
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyPressed, {0x53534B54, 1}), -9874);
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyPressed, {0x53534B53, 2}), -9874);
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyReleased, {0, 1}), -9874);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, OtherKindsOfEventsAreNotHandled) {
    add(v);
    for (const int kind : {0, 2, 4, 7})
        EXPECT_EQ(tell(static_cast<HotKeyEvent::Kind>(kind), {0x53534B53, 1}), -9874) << kind;
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(CarbonKeyboardShortcutsTest, RawKeysAreComparedByTheirModifiersAlone) {
    add(v);
    carbon->setListening(Listening::rawKeys);
    EXPECT_EQ(host.pressRaw(9, commandShift | ModifierFlags::capsLock | ModifierFlags::numericPad), 0);
    EXPECT_EQ(host.pressRaw(9, ModifierFlags::command), -9874);
    EXPECT_EQ(host.pressRaw(9, commandShift | ModifierFlags::option), -9874);
    EXPECT_EQ(host.pressRaw(21, commandShift), -9874);
    EXPECT_THAT(calls, ElementsAre("down 9", "up 9"));
}

TEST_F(CarbonKeyboardShortcutsTest, AnActionMayUnregisterItsOwnShortcut) {
    carbon->registerShortcut(
        v,
        [this](const Shortcut& shortcut) {
            carbon->unregisterShortcut(shortcut);
            calls.push_back("down " + std::to_string(shortcut.carbonKeyCode));
        },
        note("up"));
    tell(HotKeyEvent::Kind::hotKeyPressed, {0x53534B53, 1});
    EXPECT_THAT(calls, ElementsAre("down 9"));
    EXPECT_EQ(tell(HotKeyEvent::Kind::hotKeyReleased, {0x53534B53, 1}), -9874);
}

TEST_F(CarbonKeyboardShortcutsTest, NothingIsToldAfterItHasGone) {
    add(v);
    carbon.reset();
    EXPECT_FALSE(host.deliversHotKeys);
    EXPECT_FALSE(host.deliversRawKeys);
}

} // namespace
} // namespace kestrova
