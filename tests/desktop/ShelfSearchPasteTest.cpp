#include "tests/desktop/AssistiveProgram.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <csignal>
#include <sstream>
#include <tuple>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;
using Accessibility = DesktopSession::Accessibility;
using Kind = PasteDestination::Kind;

enum class Choice { BySearch, ByDigit };
enum class AfterPaste { ShelfStays, ShelfCloses };
using Case = std::tuple<Kind, Choice, AfterPaste>;

std::string caseName(const ::testing::TestParamInfo<Case>& info) {
    const auto [kind, choice, after] = info.param;
    std::ostringstream name;
    PrintTo(kind, &name);
    name << (choice == Choice::BySearch ? "BySearch" : "ByDigit")
         << (after == AfterPaste::ShelfStays ? "WhileShelfStays" : "WhileShelfCloses");
    return name.str();
}

/// A person chooses a row of the shelf, and its text goes into the program that was in front.
class ShelfSearchPaste : public ShelfTest, public ::testing::WithParamInterface<Case> {
protected:
    explicit ShelfSearchPaste(Accessibility accessibility) : ShelfTest(accessibility) {}

    void expectPasted() {
        const auto [kind, choice, after] = GetParam();
        if (after == AfterPaste::ShelfCloses)
            closeAfterPaste();
        startWith({u"apple 사과"_s, u"pear 배"_s, u"cherry 체리"_s});
        const auto destination = PasteDestination::start(session, kind);

        ASSERT_TRUE(shelf.open());
        if (choice == Choice::BySearch) {
            keys.type("pear");
            keys.tap(keyAt::returnKey);
        } else {
            pressCommandDigit(2);
        }
        EXPECT_TRUE(destination->waitForAnyText()) << program.process().standardError().toStdString();
        if (after == AfterPaste::ShelfStays) {
            EXPECT_TRUE(shelf.waitForKeyboard());
        } else {
            EXPECT_TRUE(shelf.waitUntilGone());
            EXPECT_TRUE(eventually([&] { return destination->hasKeyboard(); }));
        }
        EXPECT_TRUE(destination->waitForText(u"pear 배"_s))
            << "has " << destination->text().toStdString() << ", the search "
            << shelf.searchText().value_or("nothing").toStdString();
        EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
        EXPECT_EQ(program.contents().size(), 3);
    }
};

constexpr auto kChoices = {Choice::BySearch, Choice::ByDigit};
constexpr auto kAfterPaste = {AfterPaste::ShelfStays, AfterPaste::ShelfCloses};

class WithoutAccessibility : public ShelfSearchPaste {
protected:
    WithoutAccessibility() : ShelfSearchPaste(Accessibility::Off) {}
};

TEST_P(WithoutAccessibility, TheChosenTextGoesIntoTheProgramThatWasInFront) {
    expectPasted();
}

INSTANTIATE_TEST_SUITE_P(ShelfSearchPasteTest, WithoutAccessibility,
                         ::testing::Combine(::testing::Values(Kind::Mousepad, Kind::QtEditor, Kind::Xterm,
                                                              Kind::Lxterminal, Kind::XfceTerminal,
                                                              Kind::Chromium),
                                            ::testing::ValuesIn(kChoices), ::testing::ValuesIn(kAfterPaste)),
                         caseName);

class WithAccessibility : public ShelfSearchPaste {
protected:
    WithAccessibility() : ShelfSearchPaste(Accessibility::On) {}
};

TEST_P(WithAccessibility, TheChosenTextGoesIntoTheProgramThatWasInFront) {
    expectPasted();
}

INSTANTIATE_TEST_SUITE_P(ShelfSearchPasteTest, WithAccessibility,
                         ::testing::Combine(::testing::Values(Kind::Mousepad, Kind::QtEditor, Kind::Xterm,
                                                              Kind::XfceTerminal, Kind::Chromium),
                                            ::testing::ValuesIn(kChoices), ::testing::ValuesIn(kAfterPaste)),
                         caseName);

/// The toolkit asks an assistive program about each key before it acts on it.
class AssistedShelfTest : public ShelfTest {
protected:
    AssistedShelfTest() : ShelfTest(Accessibility::On) {}
    ~AssistedShelfTest() override { signalRegistry(SIGCONT); }

    /// False if there is no registry of accessible programs.
    bool signalRegistry(int number) { return session.signal(u"at-spi2-registryd"_s, number); }
};

TEST_F(AssistedShelfTest, WhatWasTypedBeforeReturnIsWhatIsPasted) {
    const AssistiveProgram assistant(session.busAddress());
    startWith({u"apple"_s, u"pear"_s, u"cherry"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    for (const char* search : {"app", "pea", "app"}) {
        shelf.search(search);
        keys.tap(keyAt::returnKey);
        const auto before = target.pasted(0).size();
        ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == before + 1; }));
        ASSERT_TRUE(shelf.waitForKeyboard());
    }
    EXPECT_EQ(target.pasted(0), (QStringList{u"apple"_s, u"pear"_s, u"apple"_s}));
}

TEST_F(AssistedShelfTest, NothingOvertakesKeysThatNobodyAnswersFor) {
    const AssistiveProgram assistant(session.busAddress());
    startWith({u"apple"_s, u"pear"_s, u"cherry"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(signalRegistry(SIGSTOP));
    keys.type("app");
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"apple"_s}; }))
        << target.pasted(0).join(u'|').toStdString();
}

TEST_F(AssistedShelfTest, TheShelfItselfIsNeverPastedInto) {
    const AssistiveProgram assistant(session.busAddress());
    startWith({u"apple"_s});
    ASSERT_TRUE(shelf.open());
    keys.type("typed");
    // The application in front is this program, so it is the one that is aimed at.
    ASSERT_EQ(program.command({u"paste"_s, u"1"_s}).exitStatus, 0);
    EXPECT_TRUE(eventually([this] {
        return program.process().standardError().contains(
            "Paste dropped: the focus is in a window of this program");
    })) << program.process().standardError().toStdString();
    EXPECT_EQ(shelf.searchText(), "typed");
}

TEST_F(AssistedShelfTest, AKeyPressedTwiceIsNoRepeat) {
    const AssistiveProgram assistant(session.busAddress());
    startWith({u"apple"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    for (int round = 1; round <= 3; ++round) {
        keys.tap(keyAt::returnKey);
        ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == round; })) << round;
        ASSERT_TRUE(shelf.waitForKeyboard());
    }
}

} // namespace
} // namespace kestrova::test
