#include "tests/desktop/AccessibleTree.h"
#include "tests/desktop/ShelfTest.h"

#include <algorithm>
#include <sstream>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// The shelf as a screen reader finds it.
class AccessibilityTreeTest : public ShelfTest {
protected:
    AccessibilityTreeTest() : ShelfTest(DesktopSession::Accessibility::On) {}

    void SetUp() override {
        startWith({u"first words"_s, u"second words"_s, u"https://example.org"_s});
        tree.emplace(assistive, program.process().pid());
        ASSERT_TRUE(shelf.open());
        ASSERT_TRUE(eventually([this] { return tree->named(u"검색"_s).has_value(); }));
    }

    /// Everything that can be used has a name and is something; answers how many there are.
    int expectAllUsable() {
        int usable = 0;
        for (const auto& element : tree->showing()) {
            const bool canBePressed = std::ranges::any_of(element.actions, [](const QString& action) {
                return action == u"Press" || action == u"Toggle";
            });
            if (!element.isFocusable() && !canBePressed)
                continue;
            ++usable;
            const auto what = element.role + u" '"_s + element.name + u"' "_s + element.path;
            EXPECT_FALSE(element.name.isEmpty()) << what.toStdString();
            EXPECT_FALSE(
                (QStringList{u"unknown"_s, u"filler"_s, u"invalid"_s, QString()}).contains(element.role))
                << what.toStdString();
        }
        return usable;
    }
    bool waitFor(const QString& name) {
        return eventually([&] { return tree->named(name).has_value(); });
    }

    AssistiveProgram assistive{session.busAddress()};
    std::optional<AccessibleTree> tree;
};

TEST_F(AccessibilityTreeTest, AllThatCanBeUsedHasANameAndARole) {
    // Search, four buttons, three lenses, three chips and three rows.
    EXPECT_GE(expectAllUsable(), 13);
    keys.chord({keyAt::control, keyAt::grave});
    ASSERT_TRUE(waitFor(u"보기 모드: 격자"_s));
    EXPECT_GE(expectAllUsable(), 13);
    keys.chord({keyAt::control, keyAt::k});
    ASSERT_TRUE(waitFor(u"Preview"_s));
    expectAllUsable();
    keys.tap(keyAt::escape);
    keys.chord({keyAt::control, keyAt::e});
    ASSERT_TRUE(waitFor(u"편집"_s));
    expectAllUsable();
}

TEST_F(AccessibilityTreeTest, TheRowsAreReadWithTheirPlaces) {
    const auto list = tree->named(u"클립보드 기록"_s);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->role, u"list");
    QStringList rows;
    for (const auto& element : tree->showing())
        if (element.parent == list->path && element.role == u"list item")
            rows.append(element.name + u" | "_s + element.description);
    EXPECT_EQ(rows,
              (QStringList{u"링크, https://example.org, ⌘1 | 1 / 3"_s, u"텍스트, second words, ⌘2 | 2 / 3"_s,
                           u"텍스트, first words, ⌘3 | 3 / 3"_s}));
}

TEST_F(AccessibilityTreeTest, TheRowThatTheKeysWalkToHasTheFocus) {
    const auto focusedRow = [&](const QString& start) {
        return eventually([&] {
            const auto row = tree->named(start);
            return row && row->isFocused() && row->isSelected();
        });
    };
    // From the search over the chips to the rows.
    for (int i = 0; i < 2; ++i)
        keys.tap(keyAt::down);
    EXPECT_TRUE(focusedRow(u"링크, https"_s));
    keys.tap(keyAt::down);
    EXPECT_TRUE(focusedRow(u"텍스트, second"_s));
}

TEST_F(AccessibilityTreeTest, PressingAButtonChangesWhatItTells) {
    for (const QString& name : {u"프리뷰"_s, u"사이드바"_s}) {
        const auto before = tree->named(name);
        ASSERT_TRUE(before);
        EXPECT_EQ(before->role, u"check box");
        EXPECT_FALSE(before->description.isEmpty());
        ASSERT_TRUE(tree->press(*before));
        EXPECT_TRUE(eventually([&] {
            const auto after = tree->named(name);
            return after && after->isChecked() != before->isChecked();
        }));
    }
}

TEST_F(AccessibilityTreeTest, PressingARowSelectsIt) {
    const auto row = tree->named(u"텍스트, first"_s);
    ASSERT_TRUE(row);
    EXPECT_FALSE(row->isSelected());
    ASSERT_TRUE(tree->press(*row));
    EXPECT_TRUE(eventually([&] {
        const auto after = tree->named(u"텍스트, first"_s);
        return after && after->isSelected();
    }));
}

TEST_F(AccessibilityTreeTest, TabAndReturnPressAButton) {
    const auto before = tree->named(u"프리뷰"_s);
    ASSERT_TRUE(before);
    for (int i = 0; i < 2; ++i)
        keys.tap(keyAt::tab);
    EXPECT_TRUE(eventually([&] {
        const auto button = tree->named(u"프리뷰"_s);
        return button && button->isFocused();
    }));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([&] {
        const auto after = tree->named(u"프리뷰"_s);
        return after && after->isChecked() != before->isChecked() && after->isFocused();
    }));
    EXPECT_TRUE(shelf.isUp());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(shelf.waitUntilGone());
}

} // namespace
} // namespace kestrova::test
