#include "Kestrova/shelf/ParsedColor.h"

#include <QString>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct Sample {
    QString text;
    std::optional<QColor> color;
};

class ParsedColorTest : public testing::TestWithParam<Sample> {};

TEST_P(ParsedColorTest, ReadsOrRefuses) {
    const auto read = parsedColor(GetParam().text);
    ASSERT_EQ(read.has_value(), GetParam().color.has_value()) << qPrintable(GetParam().text);
    if (!read)
        return;
    EXPECT_EQ(read->rgba(), GetParam().color->rgba()) << qPrintable(GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ParsedColorTest,
    testing::Values(Sample{u"#abc"_qs, QColor(0xaa, 0xbb, 0xcc)},
                    Sample{u"#AbCdEf"_qs, QColor(0xab, 0xcd, 0xef)},
                    Sample{u"#11223344"_qs, QColor(0x11, 0x22, 0x33, 0x44)},
                    Sample{u" \n#ff0000\t"_qs, QColor(255, 0, 0)}, Sample{u"#"_qs, {}},
                    Sample{u"#1234"_qs, {}}, Sample{u"#12345"_qs, {}}, Sample{u"#12345g"_qs, {}},
                    Sample{u"#+1234f"_qs, {}}, Sample{u"rgb(255, 0, 0)"_qs, QColor(255, 0, 0)},
                    Sample{u"RGB(255 0 0)"_qs, QColor(255, 0, 0)},
                    Sample{u"rgb(100%, 0, 0)"_qs, QColor(100, 0, 0)}, Sample{u"rgb(1, 2)"_qs, {}},
                    Sample{u"rgb(1, x, 2, 3)"_qs, QColor(1, 2, 3)}, Sample{u"rgba(1, 2, 3)"_qs, {}},
                    Sample{u"rgba(1, 2, 3, 0.5)"_qs, QColor(1, 2, 3, 128)},
                    Sample{u"rgba(1, 2, 3, 50%)"_qs, QColor(1, 2, 3, 255)},
                    Sample{u"hsl(120, 100%, 50%)"_qs, QColor(0, 255, 0)},
                    Sample{u"hsl(360, 100%, 50%)"_qs, QColor(255, 0, 0)},
                    Sample{u"hsl(-120, 100%, 50%)"_qs, QColor(0, 0, 0)},
                    Sample{u"hsla(240, 100%, 50%, 0)"_qs, QColor(0, 0, 255, 0)},
                    Sample{u"hsl(60deg, 100%, 50%)"_qs, {}}, Sample{u"rgb(nan, 1, 2)"_qs, {}},
                    Sample{u"lab(1, 2, 3)"_qs, {}}, Sample{u"rgb)1,2,3("_qs, {}}, Sample{u""_qs, {}}));

} // namespace
} // namespace kestrova
