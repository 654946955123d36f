#pragma once

#include "tests/desktop/ShelfTest.h"

namespace kestrova::test {

/// Korean as people write it: an input method composes each syllable of several keys.
class HangulTest : public ShelfTest {
protected:
    void SetUp() override {
        session.environment().insert(QStringLiteral("QT_IM_MODULE"), QStringLiteral("ibus"));
        session.start({.program = QStringLiteral("ibus-daemon"),
                       .arguments = {QStringLiteral("--replace"), QStringLiteral("--panel=disable"),
                                     QStringLiteral("--emoji-extension=disable")}});
        const auto engine = QStringLiteral("engine");
        const auto hangul = QStringLiteral("hangul");
        ASSERT_TRUE(eventually([&] {
            return session.run(QStringLiteral("ibus"), {engine, hangul}).exitStatus == 0 &&
                   session.run(QStringLiteral("ibus"), {engine}).standardOutput.trimmed() == "hangul";
        }));
    }
    /// The input method begins with Latin letters, and attends to a control some time after that has the
    /// keyboard. False if no Korean ones come. The text that stands in the control goes.
    bool switchToKorean() {
        return eventually([this] {
            // The keys of 가 and a blank, which ends the composition.
            shelf.search("rk ");
            if (shelf.searchText() == "가 ")
                return true;
            keys.chord({keyAt::shift, keyAt::space});
            return false;
        });
    }
};

} // namespace kestrova::test
