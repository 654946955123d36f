#include "KestrovaCore/ContentDetectors.h"

#include <QString>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using ContentDetectors::isColor;
using ContentDetectors::isURL;

struct DetectorCase {
    const char16_t* text;
    bool expected;
};

void PrintTo(const DetectorCase& each, std::ostream* out) {
    *out << QString::fromUtf16(each.text).toStdString();
}

class IsColor : public testing::TestWithParam<DetectorCase> {};

TEST_P(IsColor, AnswersAsTheTableSays) {
    EXPECT_EQ(isColor(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IsColor,
    testing::Values(
        DetectorCase{u"#abc", true}, DetectorCase{u"#ABCDEF", true}, DetectorCase{u"#12345678", true},
        DetectorCase{u" \n\t#fff \r\n", true}, DetectorCase{u"\u00a0#fff\u3000", true},
        DetectorCase{u"#abcd", false}, DetectorCase{u"#abcde", false}, DetectorCase{u"#1234567", false},
        DetectorCase{u"#123456789", false}, DetectorCase{u"#ggg", false}, DetectorCase{u"abc", false},
        DetectorCase{u"#", false}, DetectorCase{u"# fff", false}, DetectorCase{u"#fff #fff", false},
        DetectorCase{u"#ff\nf", false}, DetectorCase{u"#fff\n#fff", false}, DetectorCase{u"rgb(1,2,3)", true},
        DetectorCase{u"RGBA(any text at all)", true}, DetectorCase{u"HSLA(120, 50%, 50%, 0.5)", true},
        DetectorCase{u"hsl(1)", true}, DetectorCase{u"rgb( )", true}, DetectorCase{u"rgb()", false},
        DetectorCase{u"rgb(1,2,3) red", false}, DetectorCase{u"rgb(1,2,3", false},
        DetectorCase{u"rgb (1,2,3)", false}, DetectorCase{u"rgb(1))", false}, DetectorCase{u"xrgb(1)", false},
        DetectorCase{u"rgbb(1)", false}, DetectorCase{u"hsv(1,2,3)", false}, DetectorCase{u"", false},
        DetectorCase{u" \n ", false},
        // 40 characters pass, 41 do not, however well they are formed.
        DetectorCase{u"rgb(34567890123456789012345678901234567)", true},
        DetectorCase{u"rgb(345678901234567890123456789012345678)", false},
        // Characters as a person counts them: each flag is four units and one character.
        DetectorCase{u"rgb(🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷🇰🇷)", true}));

class IsURL : public testing::TestWithParam<DetectorCase> {};

TEST_P(IsURL, AnswersAsTheTableSays) {
    EXPECT_EQ(isURL(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IsURL,
    testing::Values(
        DetectorCase{u"https://example.com", true}, DetectorCase{u"HTTP://EXAMPLE.COM/", true},
        DetectorCase{u"http://word", true}, DetectorCase{u"\n https://example.com/a?b=c#d \n", true},
        DetectorCase{u"https://user:pw@host:8080/x", true}, DetectorCase{u"http://[::1]/", true},
        DetectorCase{u"https://ko.wikipedia.org/wiki/한국", true},
        DetectorCase{u"https://example.com/100%", true}, DetectorCase{u"https://한국.example", true},
        // No check is made of the host's form.
        DetectorCase{u"http://foo..bar/", true}, DetectorCase{u"http://-foo/", true},
        DetectorCase{u"http://a*b/", true}, DetectorCase{u"http://localhost:99999/", true},
        DetectorCase{u"http://a:/", true}, DetectorCase{u"http://a?b:c", true},
        DetectorCase{u"http://user@host", true}, DetectorCase{u"http://user@", false},
        DetectorCase{u"http://:80/", false}, DetectorCase{u"http://a:80b/", false},
        DetectorCase{u"http://[]/", false}, DetectorCase{u"http://[::1]:80/", true},
        DetectorCase{u"http://?a", false}, DetectorCase{u"http://#a", false}, DetectorCase{u":", false},
        DetectorCase{u"http", false}, DetectorCase{u"see https://example.com", false},
        DetectorCase{u"https://exa mple.com", false}, DetectorCase{u"https://example.com/a\u00a0b", false},
        DetectorCase{u"https://example.com\nhttps://b.com", false}, DetectorCase{u"https:///path", false},
        DetectorCase{u"https://", false}, DetectorCase{u"http:", false},
        DetectorCase{u"https:example.com", false}, DetectorCase{u"example.com", false},
        DetectorCase{u"www.example.com", false}, DetectorCase{u"ftp://example.com", false},
        DetectorCase{u"file:///etc/hosts", false}, DetectorCase{u"mailto:a@example.com", false},
        DetectorCase{u"javascript:alert(1)", false}, DetectorCase{u"httpx://example.com", false},
        DetectorCase{u"http://[::1", false}, DetectorCase{u"", false}, DetectorCase{u" \t\n", false}));

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
