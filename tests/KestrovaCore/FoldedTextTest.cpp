#include "KestrovaCore/FoldedText.h"

#include "KestrovaCore/RecordValues.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct SearchTermCase {
    const char16_t* text;
    const char16_t* term;
    bool expected;
};

class SearchTermTest : public testing::TestWithParam<SearchTermCase> {};

TEST_P(SearchTermTest, AnswersAsTheTableSays) {
    const auto& [text, term, expected] = GetParam();
    EXPECT_EQ(SearchTerm(term).isIn(foldedForSearch(text)), expected)
        << QString::fromUtf16(term).toStdString() << " in " << QString::fromUtf16(text).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Table, SearchTermTest,
    testing::Values(SearchTermCase{u"Hello World", u"WORLD", true},
                    SearchTermCase{u"hello", u"Hello!", false}, SearchTermCase{u"a  b", u"a b", false},
                    SearchTermCase{u"대한민국", u"한민", true}, SearchTermCase{u"한국", u"하", false},
                    SearchTermCase{u"하나", u"하", true},
                    // Composed and decomposed Hangul are one text.
                    SearchTermCase{u"\u1112\u1161\u11ab\u1100\u116e\u11a8", u"한국", true},
                    SearchTermCase{u"한국", u"\u1112\u1161\u11ab", true},
                    SearchTermCase{u"\u1112\u1161\u11ab", u"하", false},
                    SearchTermCase{u"CAFÉ", u"café", true}, SearchTermCase{u"CAFE\u0301", u"é", true},
                    SearchTermCase{u"café", u"cafe", false}, SearchTermCase{u"cafe", u"é", false},
                    // An accent that composes with nothing still makes another letter.
                    SearchTermCase{u"x\u0302", u"x", false}, SearchTermCase{u"x\u0302x", u"x", true},
                    SearchTermCase{u"Straße", u"STRASSE", true}, SearchTermCase{u"ΣΊΣΥΦΟΣ", u"σίσυφος", true},
                    SearchTermCase{u"ΠΡΙΒΕΤ привет", u"ПРИВЕТ", true},
                    SearchTermCase{u"日本語テキスト", u"テキ", true},
                    SearchTermCase{u"emoji 🎉 party", u"🎉", true}, SearchTermCase{u"", u"a", false},
                    SearchTermCase{u"a", u"a", true}, SearchTermCase{u"ab", u"abc", false}));

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
