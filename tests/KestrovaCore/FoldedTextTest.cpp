#include "KestrovaCore/FoldedText.h"

#include "KestrovaCore/RecordValues.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct Case {
    const char16_t* text;
    const char16_t* term;
    bool expected;
};

class SearchTermTest : public testing::TestWithParam<Case> {};

TEST_P(SearchTermTest, AnswersAsTheTableSays) {
    const auto& [text, term, expected] = GetParam();
    EXPECT_EQ(SearchTerm(term).isIn(foldedForSearch(text)), expected)
        << QString::fromUtf16(term).toStdString() << " in " << QString::fromUtf16(text).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Table, SearchTermTest,
    testing::Values(Case{u"Hello World", u"WORLD", true}, Case{u"hello", u"Hello!", false},
                    Case{u"a  b", u"a b", false}, Case{u"대한민국", u"한민", true},
                    Case{u"한국", u"하", false}, Case{u"하나", u"하", true},
                    // Composed and decomposed Hangul are one text.
                    Case{u"\u1112\u1161\u11ab\u1100\u116e\u11a8", u"한국", true},
                    Case{u"한국", u"\u1112\u1161\u11ab", true}, Case{u"\u1112\u1161\u11ab", u"하", false},
                    Case{u"CAFÉ", u"café", true}, Case{u"CAFE\u0301", u"é", true},
                    Case{u"café", u"cafe", false}, Case{u"cafe", u"é", false},
                    // An accent that composes with nothing still makes another letter.
                    Case{u"x\u0302", u"x", false}, Case{u"x\u0302x", u"x", true},
                    Case{u"Straße", u"STRASSE", true}, Case{u"ΣΊΣΥΦΟΣ", u"σίσυφος", true},
                    Case{u"ΠΡΙΒΕΤ привет", u"ПРИВЕТ", true}, Case{u"日本語テキスト", u"テキ", true},
                    Case{u"emoji 🎉 party", u"🎉", true}, Case{u"", u"a", false}, Case{u"a", u"a", true},
                    Case{u"ab", u"abc", false}));

TEST(FoldedForSearchTest, FoldsPlainRowsAsItFoldsAllOthers) {
    // A letter with an accent sends a text the general way; what stands beside it must come out the same
    // either way.
    const QString plain = QStringLiteral("Plain ASCII @[`{ \u007f 가나다힣 一中龥 \t\n");
    const QByteArray general = foldedForSearch(plain + QChar(0xe9));
    EXPECT_EQ(foldedForSearch(plain) + "\u00e9", general);
    EXPECT_EQ(foldedForSearch(plain), QByteArray("plain ascii @[`{ \u007f 가나다힣 一中龥 \t\n"));
    EXPECT_TRUE(foldedForSearch(QString()).isEmpty());
}

TEST(SearchTermTest, AnEmptyTermIsEmpty) {
    EXPECT_TRUE(SearchTerm(u"").isEmpty());
    EXPECT_FALSE(SearchTerm(u" ").isEmpty());
}

TEST(MatchesTest, LooksAtTheContentAndTheRecognisedTextAndAtNothingElse) {
    ClipboardItemValues values;
    values.content = QStringLiteral("Image");
    values.sourceApp = QStringLiteral("org.app");
    values.fileURLString = QStringLiteral("file:///secret");
    EXPECT_TRUE(matches(values, SearchTerm(u"IMA")));
    EXPECT_FALSE(matches(values, SearchTerm(u"org")));
    EXPECT_FALSE(matches(values, SearchTerm(u"secret")));
    values.ocrText = QStringLiteral("Invoice");
    EXPECT_TRUE(matches(values, SearchTerm(u"invoice")));
}

} // namespace
} // namespace kestrova
