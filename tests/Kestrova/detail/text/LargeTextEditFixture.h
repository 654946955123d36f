#pragma once

#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/TextKeys.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestrova {

/// The control in a window of its own, with the keyboard.
class LargeTextEditFixture : public testing::Test {
protected:
    LargeTextEditFixture() {
        edit.setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        edit.resize(400, 300);
        edit.show();
        edit.activateWindow();
        edit.setFocus();
    }

    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&edit)); }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&edit, key, modifiers);
    }

    /// In the middle of the line, at the place before the unit.
    QPoint pointAt(qsizetype position) {
        const auto rect = edit.caretRect(position);
        return rect ? QPoint(static_cast<int>(rect->x()) + 1, static_cast<int>(rect->center().y()))
                    : QPoint(-1, -1);
    }

    qsizetype caret() const { return edit.selection().caret; }
    int barValue() const { return edit.verticalScrollBar()->value(); }

    LargeTextEdit edit;
};

} // namespace kestrova
