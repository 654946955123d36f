#include "KeyboardShortcuts/NameObservers.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kestrova {
namespace {

const ShortcutName name{QStringLiteral("name"), std::nullopt};

TEST(NameObserversTest, ATokenThatGoesEndsItsObservation) {
    NameObservers observers;
    std::string log;
    auto first = observers.add([&](const ShortcutName& told) { log += "1" + told.rawValue.toStdString(); });
    {
        const auto second = observers.add([&](const ShortcutName&) { log += "2"; });
        observers.notify(name);
    }
    observers.notify(name);
    first = {};
    observers.notify(name);
    EXPECT_EQ(log, "1name21name");
}

TEST(NameObserversTest, AMovedTokenKeepsItsObservation) {
    NameObservers observers;
    int told = 0;
    ShortcutObservation kept;
    {
        auto made = observers.add([&](const ShortcutName&) { ++told; });
        kept = std::move(made);
    }
    observers.notify(name);
    EXPECT_EQ(told, 1);
}

TEST(NameObserversTest, OneMayEndItselfAndOthersWhileItIsTold) {
    NameObservers observers;
    int told = 0;
    ShortcutObservation second;
    ShortcutObservation first = observers.add([&](const ShortcutName&) {
        ++told;
        first = {};
        second = {};
    });
    second = observers.add([&](const ShortcutName&) { ++told; });
    observers.notify(name);
    observers.notify(name);
    EXPECT_EQ(told, 1);
}

TEST(NameObserversTest, OneThatIsAddedMeanwhileIsToldOfTheNextOnly) {
    NameObservers observers;
    int told = 0;
    ShortcutObservation added;
    const auto first = observers.add([&](const ShortcutName&) {
        if (told == 0)
            added = observers.add([&](const ShortcutName&) { told += 10; });
        ++told;
    });
    observers.notify(name);
    EXPECT_EQ(told, 1);
    observers.notify(name);
    EXPECT_EQ(told, 12);
}

TEST(NameObserversTest, ATokenMayOutliveWhatItObserves) {
    ShortcutObservation token;
    auto observers = std::make_optional<NameObservers>();
    int told = 0;
    token = observers->add([&](const ShortcutName&) { ++told; });
    observers->notify(name);
    observers.reset();
    token = {};
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace kestrova
