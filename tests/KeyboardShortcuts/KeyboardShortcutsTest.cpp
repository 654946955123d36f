#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "tests/support/FakeHotKeys.h"
#include "tests/support/FakeKeyboardLayout.h"
#include "tests/support/FakeMenuTracking.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Name = KeyboardShortcuts::Name;

const Shortcut v{9, 768};
const Shortcut four{21, 768};
const Shortcut k{40, 256};
const QString storedV = QStringLiteral(R"({"carbonKeyCode":9,"carbonModifiers":768})");
const QString keyOfA = QStringLiteral("KeyboardShortcuts_a");
const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");

class KeyboardShortcutsTest : public testing::Test {
protected:
    KeyboardShortcuts::Action note(const std::string& what) {
        return [this, what] { calls.push_back(what); };
    }
    bool isLive(const Shortcut& shortcut) const {
        return std::ranges::count(host.combinations(), FakeHotKeys::Combination{shortcut.carbonKeyCode,
                                                                                shortcut.carbonModifiers}) ==
               1;
    }
    bool press(const Shortcut& shortcut) {
        return host.press(static_cast<std::uint32_t>(shortcut.carbonKeyCode),
                          static_cast<std::uint32_t>(shortcut.carbonModifiers));
    }

    FakeHotKeys host;
    InMemoryUserDefaults defaults;
    FakeKeyboardLayout layout;
    FakeMenuTracking menuTracking;
    std::optional<KeyboardShortcuts> shortcuts{std::in_place, host,         defaults,
                                               layout,        menuTracking, QLocale(QLocale::English)};
    std::vector<std::string> calls;
};

TEST_F(KeyboardShortcutsTest, ADefaultIsStoredIfNothingAtAllWasStored) {
    std::vector<QString> told;
    const auto token =
        shortcuts->observeShortcutByNameDidChange([&](const Name& name) { told.push_back(name.rawValue); });
    const Name name = shortcuts->name(a, v);
    EXPECT_EQ(name, (Name{a, v}));
    EXPECT_EQ(defaults.object(keyOfA), QJsonValue(storedV));
    EXPECT_EQ(shortcuts->getShortcut(name), v);
    EXPECT_TRUE(isLive(v));
    EXPECT_THAT(told, ElementsAre(a));
}

TEST_F(KeyboardShortcutsTest, ANameWithoutADefaultStoresNothing) {
    shortcuts->name(a);
    EXPECT_TRUE(defaults.object(keyOfA).isUndefined());
    EXPECT_THAT(host.log, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, WhatThePersonChoseSurvivesTheDefault) {
    defaults.set(keyOfA, encoded(four));
    EXPECT_EQ(shortcuts->getShortcut(shortcuts->name(a, v)), four);
}

TEST_F(KeyboardShortcutsTest, ADeletedShortcutStaysDeleted) {
    defaults.set(keyOfA, false);
    const Name name = shortcuts->name(a, v);
    EXPECT_EQ(shortcuts->getShortcut(name), std::nullopt);
    EXPECT_EQ(defaults.object(keyOfA), QJsonValue(false));
    EXPECT_THAT(host.live, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, AMalformedTextIsNoShortcutAndTheDefaultDoesNotComeBack) {
    defaults.set(keyOfA, QStringLiteral("{\"carbonKeyCode\":9"));
    const Name name = shortcuts->name(a, v);
    EXPECT_EQ(shortcuts->getShortcut(name), std::nullopt);
    EXPECT_EQ(defaults.text(keyOfA), QStringLiteral("{\"carbonKeyCode\":9"));
}

TEST_F(KeyboardShortcutsTest, AValueThatIsNoTextIsNoShortcut) {
    for (const auto& value :
         {QJsonValue(true), QJsonValue(9), QJsonValue(QJsonObject{{a, 1}}), QJsonValue(QJsonValue::Null)}) {
        defaults.set(keyOfA, value);
        EXPECT_EQ(shortcuts->getShortcut({a, v}), std::nullopt);
    }
}

TEST_F(KeyboardShortcutsTest, AShortcutStoredByHandEqualsTheDefault) {
    defaults.set(keyOfA, storedV);
    const Name name = shortcuts->name(a, v);
    EXPECT_EQ(shortcuts->getShortcut(name), name.defaultShortcut);
}

TEST_F(KeyboardShortcutsTest, AStoredShortcutBecomesLiveWithTheFirstHandler) {
    defaults.set(keyOfA, storedV);
    const Name name = shortcuts->name(a, v);
    EXPECT_THAT(host.live, IsEmpty());
    shortcuts->onKeyDown(name, note("down"));
    EXPECT_TRUE(isLive(v));
    shortcuts->onKeyUp(name, note("up"));
    EXPECT_EQ(host.live.size(), 1u);
    EXPECT_TRUE(press(v));
    EXPECT_THAT(calls, ElementsAre("down", "up"));
}

TEST_F(KeyboardShortcutsTest, AHandlerOfANameWithoutAShortcutRegistersNothing) {
    shortcuts->onKeyDown(shortcuts->name(a), note("a"));
    EXPECT_THAT(host.log, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, HandlersOfANameRunInTheOrderInWhichTheyWereAdded) {
    const Name name = shortcuts->name(a, v);
    for (const auto* const what : {"1", "2", "3"})
        shortcuts->onKeyDown(name, note(what));
    press(v);
    EXPECT_THAT(calls, ElementsAre("1", "2", "3"));
}

TEST_F(KeyboardShortcutsTest, OnlyTheNameOfTheShortcutIsCalled) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("a"));
    shortcuts->onKeyDown(shortcuts->name(b, four), note("b"));
    press(four);
    EXPECT_THAT(calls, ElementsAre("b"));
}

TEST_F(KeyboardShortcutsTest, TwoNamesWithOneShortcutShareARegistrationAndBothAreCalled) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("a"));
    shortcuts->onKeyDown(shortcuts->name(b, v), note("b"));
    EXPECT_EQ(host.live.size(), 1u);
    press(v);
    EXPECT_THAT(calls, ElementsAre("a", "b"));
}

TEST_F(KeyboardShortcutsTest, ClearingOneOfTwoKeepsTheRegistrationForTheOther) {
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b, v);
    shortcuts->onKeyDown(first, note("a"));
    shortcuts->onKeyDown(second, note("b"));
    shortcuts->setShortcut(std::nullopt, first);
    EXPECT_TRUE(isLive(v));
    press(v);
    EXPECT_THAT(calls, ElementsAre("b"));
    shortcuts->setShortcut(std::nullopt, second);
    EXPECT_THAT(host.live, IsEmpty());
    EXPECT_TRUE(shortcuts->registeredShortcuts().isEmpty());
}

TEST_F(KeyboardShortcutsTest, SettingReplacesTheOldRegistration) {
    const Name name = shortcuts->name(a, v);
    shortcuts->onKeyDown(name, note("a"));
    shortcuts->setShortcut(k, name);
    EXPECT_FALSE(isLive(v));
    EXPECT_TRUE(isLive(k));
    EXPECT_EQ(shortcuts->registeredShortcuts(), QSet<Shortcut>{k});
    EXPECT_EQ(defaults.text(keyOfA), QStringLiteral(R"({"carbonKeyCode":40,"carbonModifiers":256})"));
    press(k);
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(KeyboardShortcutsTest, SettingTheSameShortcutLeavesExactlyOneRegistration) {
    const Name name = shortcuts->name(a, v);
    shortcuts->setShortcut(v, name);
    EXPECT_EQ(host.live.size(), 1u);
    // Also for one that two names have.
    shortcuts->setShortcut(v, shortcuts->name(b));
    shortcuts->setShortcut(v, name);
    EXPECT_EQ(host.live.size(), 1u);
}

TEST_F(KeyboardShortcutsTest, ClearingANameWithADefaultStoresTheMarker) {
    shortcuts->setShortcut(std::nullopt, shortcuts->name(a, v));
    EXPECT_EQ(defaults.object(keyOfA), QJsonValue(false));
    EXPECT_THAT(host.live, IsEmpty());
    shortcuts->name(a, v);
    EXPECT_EQ(defaults.object(keyOfA), QJsonValue(false));
}

TEST_F(KeyboardShortcutsTest, ClearingANameWithoutADefaultRemovesTheKey) {
    const Name name = shortcuts->name(a);
    shortcuts->setShortcut(v, name);
    shortcuts->setShortcut(std::nullopt, name);
    EXPECT_TRUE(defaults.object(keyOfA).isUndefined());
    EXPECT_THAT(host.live, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, AClearedShortcutComesBackWithAReset) {
    const Name name = shortcuts->name(a, v);
    shortcuts->onKeyDown(name, note("a"));
    shortcuts->setShortcut(std::nullopt, name);
    shortcuts->reset({name});
    EXPECT_EQ(shortcuts->getShortcut(name), v);
    press(v);
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(KeyboardShortcutsTest, AResetOfANameWithoutADefaultRemovesTheKey) {
    const Name name = shortcuts->name(a);
    shortcuts->setShortcut(v, name);
    shortcuts->reset({name});
    EXPECT_TRUE(defaults.object(keyOfA).isUndefined());
}

TEST_F(KeyboardShortcutsTest, AResetTakesSeveralNamesAndLeavesTheOthers) {
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b, four);
    const Name third = shortcuts->name(QStringLiteral("c"), k);
    for (const auto& name : {first, second, third})
        shortcuts->setShortcut(std::nullopt, name);
    shortcuts->reset({first, second});
    EXPECT_EQ(shortcuts->getShortcut(first), v);
    EXPECT_EQ(shortcuts->getShortcut(second), four);
    EXPECT_EQ(shortcuts->getShortcut(third), std::nullopt);
}

TEST_F(KeyboardShortcutsTest, ResetAllTakesEveryName) {
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b);
    shortcuts->setShortcut(k, first);
    shortcuts->setShortcut(four, second);
    shortcuts->resetAll();
    EXPECT_EQ(shortcuts->getShortcut(first), v);
    EXPECT_EQ(shortcuts->getShortcut(second), std::nullopt);
    EXPECT_EQ(host.live.size(), 1u);
}

TEST_F(KeyboardShortcutsTest, DisablingAndEnablingANameLeavesWhatIsStored) {
    const Name name = shortcuts->name(a, v);
    shortcuts->onKeyDown(name, note("a"));
    shortcuts->disable(name);
    EXPECT_THAT(host.live, IsEmpty());
    EXPECT_EQ(shortcuts->getShortcut(name), v);
    shortcuts->enable(name);
    shortcuts->enable(name);
    EXPECT_EQ(host.live.size(), 1u);
    press(v);
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(KeyboardShortcutsTest, DisablingOneOfTwoKeepsTheRegistrationForTheOther) {
    const Name first = shortcuts->name(a, v);
    shortcuts->name(b, v);
    shortcuts->disable(first);
    EXPECT_TRUE(isLive(v));
}

TEST_F(KeyboardShortcutsTest, EveryStoreOperationIsToldWithItsNameOnceItIsStored) {
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b);
    std::vector<std::pair<QString, std::optional<Shortcut>>> told;
    auto token = shortcuts->observeShortcutByNameDidChange(
        [&](const Name& name) { told.emplace_back(name.rawValue, shortcuts->getShortcut(name)); });
    shortcuts->setShortcut(v, first);
    shortcuts->setShortcut(std::nullopt, first);
    shortcuts->reset({first, second});
    shortcuts->disable(first);
    using Told = std::pair<QString, std::optional<Shortcut>>;
    EXPECT_THAT(told, ElementsAre(Told{a, v}, Told{a, std::nullopt}, Told{a, v}, Told{b, std::nullopt}));
    token = {};
    shortcuts->setShortcut(k, first);
    EXPECT_EQ(told.size(), 4u);
}

TEST_F(KeyboardShortcutsTest, WhilePausedAPressIsSwallowedAndDoesNothing) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("a"));
    EXPECT_FALSE(shortcuts->isPaused());
    shortcuts->setPaused(true);
    EXPECT_TRUE(isLive(v));
    EXPECT_TRUE(press(v));
    EXPECT_THAT(calls, IsEmpty());
    shortcuts->setPaused(false);
    press(v);
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(KeyboardShortcutsTest, TheLayerIsSwitchedOffAndOnAsAWhole) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("a"));
    EXPECT_TRUE(shortcuts->isEnabled());
    shortcuts->setEnabled(false);
    EXPECT_FALSE(shortcuts->isEnabled());
    EXPECT_FALSE(press(v));
    EXPECT_THAT(host.live, IsEmpty());
    menuTracking.begin();
    EXPECT_FALSE(host.deliversRawKeys);
    menuTracking.end();
    shortcuts->setEnabled(true);
    press(v);
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(KeyboardShortcutsTest, WithAMenuOpenShortcutsWorkThroughRawKeys) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("down"));
    shortcuts->onKeyUp(shortcuts->name(a, v), note("up"));
    menuTracking.begin();
    EXPECT_TRUE(shortcuts->isMenuOpen());
    EXPECT_THAT(host.live, IsEmpty());
    EXPECT_EQ(host.pressRaw(9, ModifierFlags::command | ModifierFlags::shift), 0);
    EXPECT_THAT(calls, ElementsAre("down", "up"));
    EXPECT_EQ(host.pressRaw(0, 0), HotKeys::eventNotHandled);
    menuTracking.end();
    EXPECT_FALSE(shortcuts->isMenuOpen());
    EXPECT_FALSE(host.deliversRawKeys);
    press(v);
    EXPECT_EQ(calls.size(), 4u);
}

TEST_F(KeyboardShortcutsTest, ASecondBeginOrEndChangesNothing) {
    shortcuts->name(a, v);
    menuTracking.end();
    menuTracking.begin();
    const auto size = host.log.size();
    menuTracking.begin();
    EXPECT_EQ(host.log.size(), size);
}

TEST_F(KeyboardShortcutsTest, ARefusedShortcutIsStoredAndCanBeAskedFor) {
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    const LogCapture log;
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b, four);
    shortcuts->onKeyDown(first, note("a"));
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("Error registering hotkey ⇧⌘V:-9878")}));
    EXPECT_EQ(shortcuts->getShortcut(first), v);
    const auto refused = shortcuts->refusedShortcuts();
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].name, first);
    EXPECT_EQ(refused[0].description, u"⇧⌘V");
    EXPECT_EQ(refused[0].status, HotKeys::alreadyHeld);
    // Once the other program has let go, setting it again takes it.
    host.refused.clear();
    shortcuts->setShortcut(v, first);
    EXPECT_THAT(shortcuts->refusedShortcuts(), IsEmpty());
    press(v);
    EXPECT_THAT(calls, ElementsAre("a"));
    EXPECT_EQ(host.live.size(), 2u);
}

TEST_F(KeyboardShortcutsTest, ARefusedShortcutThatIsReplacedIsNoLongerToldOf) {
    host.refused[{9, 768}] = {HotKeys::alreadyHeld, std::nullopt};
    const LogCapture log;
    const Name name = shortcuts->name(a, v);
    shortcuts->setShortcut(k, name);
    EXPECT_THAT(shortcuts->refusedShortcuts(), IsEmpty());
}

TEST_F(KeyboardShortcutsTest, AnActionMayAddHandlersAndChangeShortcuts) {
    const Name name = shortcuts->name(a, v);
    shortcuts->onKeyDown(name, [&] {
        calls.emplace_back("1");
        shortcuts->onKeyDown(name, note("late"));
        shortcuts->setShortcut(k, name);
    });
    shortcuts->onKeyDown(name, note("2"));
    host.handler({HotKeyEvent::Kind::hotKeyPressed, host.live.begin()->second.identifier, 0, 0});
    EXPECT_THAT(calls, ElementsAre("1", "2"));
    EXPECT_TRUE(isLive(k));
}

TEST_F(KeyboardShortcutsTest, APressRunsTheNamesThatHadTheShortcutWhenItCame) {
    const Name first = shortcuts->name(a, v);
    const Name second = shortcuts->name(b, v);
    shortcuts->onKeyDown(first, [&] { shortcuts->setShortcut(k, second); });
    shortcuts->onKeyDown(second, note("b"));
    press(v);
    EXPECT_THAT(calls, ElementsAre("b"));
}

TEST_F(KeyboardShortcutsTest, NothingIsCalledAfterItHasGone) {
    shortcuts->onKeyDown(shortcuts->name(a, v), note("a"));
    shortcuts.reset();
    EXPECT_FALSE(press(v));
    menuTracking.begin();
    EXPECT_FALSE(host.deliversRawKeys);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, WhatSomebodyElseStoresIsLiveAtOnce) {
    const Name name = shortcuts->name(a, v);
    shortcuts->onKeyDown(name, note("a"));
    int told = 0;
    const auto token = shortcuts->observeShortcutByNameDidChange([&](const Name&) { ++told; });
    defaults.set(keyOfA, QStringLiteral(R"({"carbonKeyCode":40,"carbonModifiers":256})"));
    EXPECT_FALSE(isLive(v));
    EXPECT_TRUE(press(k));
    EXPECT_THAT(calls, ElementsAre("a"));
    EXPECT_EQ(told, 1);
    defaults.set(keyOfA, QStringLiteral("no shortcut"));
    EXPECT_FALSE(isLive(k));
    shortcuts->setShortcut(four, name);
    EXPECT_TRUE(isLive(four));
    EXPECT_EQ(host.combinations().size(), 1u);
    EXPECT_EQ(told, 3);
}

} // namespace
} // namespace kestrova
