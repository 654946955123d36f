#include "Kestrova/state/Reactions.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kestrova {
namespace {

/// A holder with three fields, which logs each reaction as "field:old>new".
class ReactionsTest : public testing::Test {
protected:
    ReactionsTest() {
        watch("a", a);
        watch("b", b);
        watch("c", c);
        reactions.onSettled = [this] { log.push_back("settled"); };
    }

    void watch(const std::string& name, int& field) {
        reactions.when([&field] { return field; },
                       [this, name](int from, int to) {
                           log.push_back(name + ":" + std::to_string(from) + ">" + std::to_string(to));
                           if (react)
                               react(name);
                       });
    }
    using Log = std::vector<std::string>;

    Reactions reactions;
    int a = 0, b = 0, c = 0;
    Log log;
    std::function<void(const std::string&)> react;
};

TEST_F(ReactionsTest, RunAfterTheHandlerHasReturnedInTheOrderOfTheTable) {
    reactions.perform([&] {
        c = 1;
        a = 1;
        EXPECT_TRUE(log.empty());
    });
    EXPECT_EQ(log, (Log{"a:0>1", "c:0>1", "settled"}));
}

TEST_F(ReactionsTest, AHandlerThatChangesNothingRunsNothing) {
    reactions.perform([] {});
    EXPECT_TRUE(log.empty());
}

TEST_F(ReactionsTest, AFieldThatEndsAsItBeganHasNotChanged) {
    reactions.perform([&] {
        a = 5;
        a = 0;
    });
    EXPECT_TRUE(log.empty());
}

TEST_F(ReactionsTest, OnlyTheFirstAndTheLastValueCount) {
    reactions.perform([&] {
        a = 1;
        a = 2;
        a = 3;
    });
    EXPECT_EQ(log, (Log{"a:0>3", "settled"}));
}

TEST_F(ReactionsTest, WhatAReactionChangesIsLookedAtInAFurtherPass) {
    react = [&](const std::string& name) {
        if (name == "a")
            b = 7;
    };
    // b was changed by the handler too: its first reaction sees the handler's value, the next pass the
    // reaction's.
    reactions.perform([&] {
        a = 1;
        b = 1;
        c = 1;
    });
    EXPECT_EQ(log, (Log{"a:0>1", "b:0>1", "c:0>1", "b:1>7", "settled"}));
}

TEST_F(ReactionsTest, AReactionThatChangesAnEarlierFieldRunsThatReactionInTheNextPass) {
    react = [&](const std::string& name) {
        if (name == "c")
            a = 9;
    };
    reactions.perform([&] {
        b = 1;
        c = 1;
    });
    EXPECT_EQ(log, (Log{"b:0>1", "c:0>1", "a:0>9", "settled"}));
}

TEST_F(ReactionsTest, AReactionThatUndoesAChangeIsAChangeOfItsOwn) {
    react = [&](const std::string& name) {
        if (name == "a" && a == 1)
            a = 0;
    };
    reactions.perform([&] { a = 1; });
    EXPECT_EQ(log, (Log{"a:0>1", "a:1>0", "settled"}));
}

TEST_F(ReactionsTest, ANestedPerformJoinsTheOutermost) {
    reactions.perform([&] {
        reactions.perform([&] { a = 1; });
        EXPECT_TRUE(log.empty());
        b = 1;
    });
    EXPECT_EQ(log, (Log{"a:0>1", "b:0>1", "settled"}));
}

TEST_F(ReactionsTest, APerformWithinAReactionJoinsTheOutermost) {
    react = [&](const std::string& name) {
        if (name == "a")
            reactions.perform([&] { c = 4; });
    };
    reactions.perform([&] {
        a = 1;
        b = 1;
    });
    EXPECT_EQ(log, (Log{"a:0>1", "b:0>1", "c:0>4", "settled"}));
}

TEST_F(ReactionsTest, AHandlerThatThrowsLeavesTheNextOneWorking) {
    EXPECT_THROW(reactions.perform([&] {
        a = 1;
        throw 1;
    }),
                 int);
    reactions.perform([&] { b = 1; });
    EXPECT_EQ(log, (Log{"a:0>1", "b:0>1", "settled"}));
}

TEST_F(ReactionsTest, WhoPaintsMayEnterTheHolderAgain) {
    reactions.onSettled = [this] {
        log.push_back("settled");
        if (a == 1)
            reactions.perform([&] { a = 2; });
    };
    reactions.perform([&] { a = 1; });
    EXPECT_EQ(log, (Log{"a:0>1", "settled", "a:1>2", "settled"}));
}

TEST_F(ReactionsTest, WhatChangedOutsideAnEntryIsSeenByTheNextOne) {
    a = 1;
    EXPECT_TRUE(log.empty());
    reactions.perform([] {});
    EXPECT_EQ(log, (Log{"a:0>1", "settled"}));
}

TEST_F(ReactionsTest, AWatchedValueHasNoReactionButItsChangeIsPainted) {
    int d = 0;
    reactions.watch([&d] { return d; });
    reactions.perform([&] { d = 1; });
    EXPECT_EQ(log, Log{"settled"});
    reactions.perform([] {});
    EXPECT_EQ(log, Log{"settled"});
}

TEST_F(ReactionsTest, AWatchedValueThatAReactionChangesIsPaintedWithIt) {
    int d = 0;
    reactions.watch([&d] { return d; });
    react = [&](const std::string&) { d = 1; };
    reactions.perform([&] { a = 1; });
    EXPECT_EQ(log, (Log{"a:0>1", "settled"}));
}

TEST_F(ReactionsTest, AValueThatWasWatchedIsNotKept) {
    auto held = std::make_shared<int>(1);
    reactions.watch([&held] { return held; });
    const std::weak_ptr<int> gone = held;
    reactions.perform([&] { held.reset(); });
    EXPECT_TRUE(gone.expired());
}

TEST(ReactionsDeathTest, ATableThatNeverComesToRestIsABrokenInvariant) {
    EXPECT_DEATH(
        {
            Reactions reactions;
            int field = 0;
            reactions.when([&] { return field; }, [&](int, int to) { field = to + 1; });
            reactions.perform([&] { field = 1; });
        },
        "without end");
}

} // namespace
} // namespace kestrova
