#include "tests/support/InMemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace kestrova {
namespace {

const QString key = QStringLiteral("key");

TEST(UserDefaultsTest, AReadOfAnotherTypeIsAbsent) {
    InMemoryUserDefaults defaults;
    EXPECT_EQ(defaults.boolean(key), std::nullopt);
    defaults.set(key, QStringLiteral("false"));
    EXPECT_EQ(defaults.boolean(key), std::nullopt);
    EXPECT_EQ(defaults.integer(key), std::nullopt);
    EXPECT_EQ(defaults.text(key), QStringLiteral("false"));
    defaults.set(key, 0);
    EXPECT_EQ(defaults.boolean(key), std::nullopt);
    EXPECT_EQ(defaults.integer(key), 0);
    EXPECT_EQ(defaults.number(key), 0.0);
    defaults.set(key, 1.5);
    EXPECT_EQ(defaults.integer(key), std::nullopt);
    EXPECT_EQ(defaults.number(key), 1.5);
    defaults.set(key, 1e300);
    EXPECT_EQ(defaults.integer(key), std::nullopt);
    defaults.set(key, false);
    EXPECT_EQ(defaults.boolean(key), false);
}

TEST(UserDefaultsTest, TellsTheObserversOfAKeyAfterEachRealChange) {
    InMemoryUserDefaults defaults;
    int told = 0;
    std::optional<bool> seen;
    auto observation = defaults.observe(key, [&] {
        ++told;
        seen = defaults.boolean(key);
    });
    defaults.set(QStringLiteral("other"), true);
    EXPECT_EQ(told, 0);
    defaults.set(key, true);
    defaults.set(key, true);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(seen, true);
    defaults.set(key, QJsonValue::Undefined);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(seen, std::nullopt);
    observation = {};
    defaults.set(key, true);
    EXPECT_EQ(told, 2);
}

TEST(UserDefaultsTest, AnObserverMayEndItselfAndOthersWhileItIsTold) {
    InMemoryUserDefaults defaults;
    int told = 0;
    DefaultsObservation second;
    DefaultsObservation first = defaults.observe(key, [&] {
        ++told;
        first = {};
        second = {};
    });
    second = defaults.observe(key, [&] { told += 100; });
    defaults.set(key, 1);
    defaults.set(key, 2);
    EXPECT_EQ(told, 1);
}

TEST(UserDefaultsTest, AnObserverThatObservesAgainIsToldOnceAChange) {
    InMemoryUserDefaults defaults;
    int told = 0;
    std::vector<DefaultsObservation> observations;
    std::function<void()> again = [&] {
        ++told;
        observations.push_back(defaults.observe(key, again));
    };
    observations.push_back(defaults.observe(key, again));
    defaults.set(key, 1);
    EXPECT_EQ(told, 1);
    defaults.set(key, 2);
    EXPECT_EQ(told, 3);
}

} // namespace
} // namespace kestrova
