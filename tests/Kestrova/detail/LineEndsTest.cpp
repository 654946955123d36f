#include "Kestrova/detail/LineEnds.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct LineEndRow {
    const char* name;
    QString text;
    std::optional<QString> lineEnd;
};

class LineEndsTest : public testing::TestWithParam<LineEndRow> {};

TEST_P(LineEndsTest, TheLinesEndAsTheRowSays) {
    EXPECT_EQ(commonLineEnd(GetParam().text), GetParam().lineEnd);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LineEndsTest,
    testing::Values(LineEndRow{"NoText", QString(), u"\n"_qs}, LineEndRow{"OneLine", u"a"_qs, u"\n"_qs},
                    LineEndRow{"LineFeeds", u"a\n\nb\n"_qs, u"\n"_qs},
                    LineEndRow{"CarriageReturnsWithLineFeeds", u"a\r\n\r\nb\r\n"_qs, u"\r\n"_qs},
                    LineEndRow{"CarriageReturns", u"a\r\rb\r"_qs, u"\r"_qs},
                    LineEndRow{"LineFeedsThenAPair", u"a\nb\r\n"_qs, std::nullopt},
                    LineEndRow{"APairThenALineFeed", u"a\r\nb\n"_qs, std::nullopt},
                    LineEndRow{"APairThenACarriageReturn", u"a\r\n\rb"_qs, std::nullopt},
                    LineEndRow{"ALineFeedThenACarriageReturn", u"a\n\rb"_qs, std::nullopt},
                    LineEndRow{"ParagraphSeparator", u"a\u2029b"_qs, std::nullopt},
                    LineEndRow{"LineSeparator", u"a\u2028b"_qs, u"\n"_qs},
                    LineEndRow{"BeginningOfFrame", u"a\ufdd0b"_qs, std::nullopt},
                    LineEndRow{"EndOfFrame", u"a\ufdd1b"_qs, std::nullopt},
                    LineEndRow{"OtherControls", u"a\u000b\u000c\u0085\u00a0b"_qs, u"\n"_qs}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace kestrova
