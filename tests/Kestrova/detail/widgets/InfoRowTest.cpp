#include "Kestrova/detail/widgets/InfoRow.h"

#include "Kestrova/detail/widgets/WrappedText.h"
#include "Kestrova/look/InterfaceFont.h"
#include "tests/Kestrova/detail/widgets/DetailFixture.h"

namespace kestrova {
namespace {

class InfoRowTest : public DetailFixture {
protected:
    InfoRowTest() { row.resize(300, 30); }
    int height(const QString& value) {
        row.render({.label = u"Path"_qs, .value = value}, dark);
        return row.heightForWidth(300);
    }

    InfoRow row{nullptr};
};

TEST_F(InfoRowTest, AShortValueStandsBesideItsLabel) {
    EXPECT_EQ(height(u"/a"_qs), height(u"/ab"_qs));
    EXPECT_EQ(row.toolTip(), QString());
}

TEST_F(InfoRowTest, ALongValueStandsBelowInFull) {
    const int oneLine = height(u"/a"_qs);
    EXPECT_GT(height(u"/home/user/documents/reports/2026/budget.pdf"_qs), oneLine);
    EXPECT_EQ(row.toolTip(), QString());
}

TEST_F(InfoRowTest, AnEndlessValueTakesNoMoreRoomAndStandsInTheToolTip) {
    const int hundred = height(u"/deep folder"_qs.repeated(100));
    EXPECT_EQ(height(u"/deep folder"_qs.repeated(100'000)), hundred);
    EXPECT_TRUE(row.toolTip().contains(u"/deep folder/deep folder"));
    EXPECT_LT(row.toolTip().size(), 2000);
}

TEST_F(InfoRowTest, AToolTipIsNoMarkup) {
    height(u"/<img src='http://example.org/a.png'>"_qs.repeated(20));
    EXPECT_FALSE(row.toolTip().contains(u"<img"));
    EXPECT_TRUE(row.toolTip().contains(u"&lt;img"));
}

TEST_F(InfoRowTest, AnotherThemeIsPainted) {
    row.render({.label = u"Path"_qs, .value = u"/a"_qs}, dark);
    const auto before = seen(row);
    row.render({.label = u"Path"_qs, .value = u"/a"_qs}, light);
    EXPECT_NE(seen(row), before);
}

// Texts in a few lines

WrappedText::Form form(int mostLines, Qt::TextElideMode mode = Qt::ElideRight) {
    return {.font = interfaceFont(12), .width = 120, .mostLines = mostLines, .elideMode = mode};
}

TEST(WrappedTextTest, ATextThatFitsIsNotCut) {
    const WrappedText text(u"short"_qs, form(1));
    EXPECT_FALSE(text.isCut());
    EXPECT_GT(text.width(), 0);
    EXPECT_LE(text.width(), 120);
}

TEST(WrappedTextTest, ATextHasNoMoreLinesThanAskedFor) {
    const auto endless = u"word "_qs.repeated(1000);
    const double line = WrappedText(u"word"_qs, form(1)).height();
    for (const int lines : {1, 2, 5}) {
        const WrappedText text(endless, form(lines));
        EXPECT_TRUE(text.isCut());
        EXPECT_NEAR(text.height(), lines * line, 1);
        EXPECT_LE(text.width(), 120);
    }
}

TEST(WrappedTextTest, NewlinesMakeNoLines) {
    EXPECT_EQ(WrappedText(u"a\nb\r\nc"_qs, form(4)).height(), WrappedText(u"a"_qs, form(4)).height());
}

TEST(WrappedTextTest, HalvesOfCharactersDoNoHarm) {
    const WrappedText text(u"👩‍💻"_qs.repeated(1000), form(2, Qt::ElideMiddle));
    EXPECT_TRUE(text.isCut());
}

} // namespace
} // namespace kestrova
