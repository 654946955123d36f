#include "KestrovaCore/ContentDetectors.h"

#include <QString>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using ContentDetectors::isColor;
using ContentDetectors::isURL;

struct Case {
    const char16_t* text;
    bool expected;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << QString::fromUtf16(each.text).toStdString();
}

class IsColor : public testing::TestWithParam<Case> {};

TEST_P(IsColor, AnswersAsTheTableSays) {
    EXPECT_EQ(isColor(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IsColor,
    testing::Values(Case{u"#abc", true}, Case{u"#ABCDEF", true}, Case{u"#12345678", true},
                    Case{u" \n\t#fff \r\n", true}, Case{u"\u00a0#fff\u3000", true}, Case{u"#abcd", false},
                    Case{u"#abcde", false}, Case{u"#1234567", false}, Case{u"#123456789", false},
                    Case{u"#ggg", false}, Case{u"abc", false}, Case{u"#", false}, Case{u"# fff", false},
                    Case{u"#fff #fff", false}, Case{u"#ff\nf", false}, Case{u"#fff\n#fff", false},
                    Case{u"rgb(1,2,3)", true}, Case{u"RGBA(any text at all)", true},
                    Case{u"HSLA(120, 50%, 50%, 0.5)", true}, Case{u"hsl(1)", true}, Case{u"rgb( )", true},
                    Case{u"rgb()", false}, Case{u"rgb(1,2,3) red", false}, Case{u"rgb(1,2,3", false},
                    Case{u"rgb (1,2,3)", false}, Case{u"rgb(1))", false}, Case{u"xrgb(1)", false},
                    Case{u"rgbb(1)", false}, Case{u"hsv(1,2,3)", false}, Case{u"", false},
                    Case{u" \n ", false},
                    // 40 characters pass, 41 do not, however well they are formed.
                    Case{u"rgb(34567890123456789012345678901234567)", true},
                    Case{u"rgb(345678901234567890123456789012345678)", false},
                    // Characters as a person counts them: each flag is four units and one character.
                    Case{u"rgb(🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷)", true}));

class IsURL : public testing::TestWithParam<Case> {};

TEST_P(IsURL, AnswersAsTheTableSays) {
    EXPECT_EQ(isURL(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IsURL,
    testing::Values(
        Case{u"https://example.com", true}, Case{u"HTTP://EXAMPLE.COM/", true}, Case{u"http://word", true},
        Case{u"\n https://example.com/a?b=c#d \n", true}, Case{u"https://user:pw@host:8080/x", true},
        Case{u"http://[::1]/", true}, Case{u"https://ko.wikipedia.org/wiki/한국", true},
        Case{u"https://example.com/100%", true}, Case{u"https://한국.example", true},
        // No check is made of the host's form.
        Case{u"http://foo..bar/", true}, Case{u"http://-foo/", true}, Case{u"http://a*b/", true},
        Case{u"http://localhost:99999/", true}, Case{u"http://a:/", true}, Case{u"http://a?b:c", true},
        Case{u"http://user@host", true}, Case{u"http://user@", false}, Case{u"http://:80/", false},
        Case{u"http://a:80b/", false}, Case{u"http://[]/", false}, Case{u"http://[::1]:80/", true},
        Case{u"http://?a", false}, Case{u"http://#a", false}, Case{u":", false}, Case{u"http", false},
        Case{u"see https://example.com", false}, Case{u"https://exa mple.com", false},
        Case{u"https://example.com/a\u00a0b", false}, Case{u"https://example.com\nhttps://b.com", false},
        Case{u"https:///path", false}, Case{u"https://", false}, Case{u"http:", false},
        Case{u"https:example.com", false}, Case{u"example.com", false}, Case{u"www.example.com", false},
        Case{u"ftp://example.com", false}, Case{u"file:///etc/hosts", false},
        Case{u"mailto:a@example.com", false}, Case{u"javascript:alert(1)", false},
        Case{u"httpx://example.com", false}, Case{u"http://[::1", false}, Case{u"", false},
        Case{u" \t\n", false}));

TEST(IsURLTest, TwoThousandCharactersPassAndOneMoreDoesNot) {
    const QString start = QStringLiteral("https://example.com/");
    EXPECT_TRUE(isURL(start + QString(2000 - start.size(), u'a')));
    EXPECT_FALSE(isURL(start + QString(2001 - start.size(), u'a')));
    // Blanks around it do not count.
    EXPECT_TRUE(isURL(u' ' + start + QString(2000 - start.size(), u'a') + u'\n'));
}

TEST(ContentDetectorsTest, AHugeSingleWordIsNeitherAndIsAnsweredAtOnce) {
    const QString word(20'000'000, u'x');
    EXPECT_FALSE(isColor(word));
    EXPECT_FALSE(isURL(word));
}

} // namespace
} // namespace kestrova
