#include "Platform/x11/TextControlKeys.h"
#include "tests/Kestrova/detail/text/LargeTextEditFixture.h"

#include <QPushButton>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// What the key monitors take the control for.
class LargeTextKeysTest : public LargeTextEditFixture {
protected:
    LargeTextKeysTest() {
        edit.setReadOnly(false);
        edit.setText(u"words"_s);
    }
    TextControlState state() const {
        const auto found = textControlState(&edit);
        EXPECT_TRUE(found);
        return found.value_or(TextControlState{});
    }
};

TEST_F(LargeTextKeysTest, ItIsAControlForText) {
    EXPECT_TRUE(textControlState(&edit));
}

TEST_F(LargeTextKeysTest, ItHasASelectionWhileSomethingIsMarked) {
    EXPECT_FALSE(state().hasSelection);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(state().hasSelection);
    key(Qt::Key_Right);
    EXPECT_FALSE(state().hasSelection);
}

TEST_F(LargeTextKeysTest, ItCanUndoWhileThereIsSomethingToUndo) {
    EXPECT_FALSE(state().canUndo);
    key(Qt::Key_X);
    EXPECT_TRUE(state().canUndo);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(state().canUndo);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(state().canUndo);
    edit.setText(u"other words"_s);
    EXPECT_FALSE(state().canUndo);
}

TEST_F(LargeTextKeysTest, OtherWidgetsAreNoControlsForText) {
    const QWidget plain;
    const QPushButton button;
    EXPECT_FALSE(textControlState(&plain));
    EXPECT_FALSE(textControlState(&button));
    EXPECT_FALSE(textControlState(nullptr));
}

} // namespace
} // namespace kestrova
