#include "Platform/x11/FocusMemory.h"
#include "Platform/x11/FocusedElement.h"
#include "Platform/x11/TextUnits.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(TextUnitsTest, AToolkitCountsAnInsertionInItsOwnUnit) {
    const auto text = u"한글😀a"_s;
    EXPECT_EQ(lengthIn(text, textUnitsOfToolkit(u"gtk")->length), 11);
    EXPECT_EQ(lengthIn(text, textUnitsOfToolkit(u"GTK")->length), 11);
    EXPECT_EQ(lengthIn(text, textUnitsOfToolkit(u"Qt")->length), 5);
    EXPECT_EQ(lengthIn(text, TextUnit::CodePoint), 4);
}

TEST(TextUnitsTest, ToolkitsThatAnswerBeforeTheyAreDoneAndUnknownOnesAreLeftOut) {
    for (const auto& name : {u"Chromium"_s, u"Gecko"_s, u"WebKitGTK"_s, u""_s, u"something"_s})
        EXPECT_FALSE(textUnitsOfToolkit(name)) << name.toStdString();
}

TEST(TextUnitsTest, CharactersAreOneAnOffsetAndGiveTheTextBack) {
    const auto text = u"한글😀a"_s;
    EXPECT_EQ(characters(text, TextUnit::CodePoint).size(), 4U);
    EXPECT_EQ(characters(text, TextUnit::Utf16).size(), 5U);
    for (const auto unit : {TextUnit::CodePoint, TextUnit::Utf16})
        EXPECT_EQ(textOf(characters(text, unit), unit), text);
}

TEST(FocusMemoryTest, EachApplicationHasItsLatestElementAndTheLatestComesFirst) {
    FocusMemory memory;
    memory.gained({":1.1", "/a"});
    memory.gained({":1.2", "/b"});
    memory.gained({":1.1", "/c"});
    EXPECT_EQ(memory.elements(), (std::vector<AtspiReference>{{":1.1", "/c"}, {":1.2", "/b"}}));
}

TEST(FocusMemoryTest, AnElementThatLostTheFocusCountsOnlyWhereNothingElseIsKnown) {
    FocusMemory memory;
    memory.lost({":1.1", "/a"});
    memory.gained({":1.2", "/b"});
    memory.lost({":1.2", "/c"});
    EXPECT_EQ(memory.elements(), (std::vector<AtspiReference>{{":1.2", "/b"}, {":1.1", "/a"}}));
}

TEST(FocusMemoryTest, TheApplicationThatHadTheFocusLongestAgoIsForgotten) {
    FocusMemory memory;
    for (std::size_t i = 0; i <= FocusMemory::mostApplications; ++i)
        memory.gained({QByteArray::number(i), "/a"});
    EXPECT_EQ(memory.elements().size(), FocusMemory::mostApplications);
    EXPECT_EQ(memory.elements().back().connection, "1");
}

TEST(WindowTitleTest, AWindowIsKnownByItsNameWithOrWithoutTheProgramsName) {
    EXPECT_TRUE(isWindowTitle(u"notes", u"notes"));
    EXPECT_TRUE(isWindowTitle(u"notes — Editor", u"notes"));
    EXPECT_TRUE(isWindowTitle(u"notes - Editor", u"notes"));
    EXPECT_FALSE(isWindowTitle(u"notes 2 — Editor", u"notes"));
    EXPECT_FALSE(isWindowTitle(u"notes2", u"notes"));
    EXPECT_FALSE(isWindowTitle(u"notes ", u"notes"));
    EXPECT_FALSE(isWindowTitle(u"other", u"notes"));
    EXPECT_FALSE(isWindowTitle(u"notes", u""));
}

} // namespace
} // namespace kestrova
