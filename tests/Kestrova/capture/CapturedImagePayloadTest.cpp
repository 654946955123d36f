#include "Kestrova/capture/CapturedImagePayload.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct Name {
    QString suggested;
    QString normalised;
};
class NormalisedNameTest : public testing::TestWithParam<Name> {};

TEST_P(NormalisedNameTest, IsThatOfAPNG) {
    EXPECT_EQ(CapturedImagePayload::normalisedName(GetParam().suggested), GetParam().normalised);
}

INSTANTIATE_TEST_SUITE_P(
    Names, NormalisedNameTest,
    testing::Values(Name{u"Screenshot.png"_qs, u"Screenshot.png"_qs}, Name{u"a/b:c.PNG"_qs, u"a-b-c.PNG"_qs},
                    Name{u"Screenshot 2026-01-02 at 3.04.05"_qs, u"Screenshot 2026-01-02 at 3.04.05.png"_qs},
                    Name{u"  \t스크린샷\r\n"_qs, u"스크린샷.png"_qs}, Name{u""_qs, u"Screenshot.png"_qs},
                    Name{u" \n\u2028 "_qs, u"Screenshot.png"_qs},
                    Name{u"picture.jpg"_qs, u"picture.jpg.png"_qs},
                    Name{u"picture.Png"_qs, u"picture.Png"_qs}, Name{u"png"_qs, u"png.png"_qs},
                    Name{u".png"_qs, u".png.png"_qs}, Name{u"name."_qs, u"name..png"_qs},
                    Name{u"/"_qs, u"-.png"_qs}, Name{u"../../etc/passwd"_qs, u"..-..-etc-passwd.png"_qs},
                    Name{u".."_qs, u"...png"_qs}, Name{u"two\nlines.png"_qs, u"two\nlines.png"_qs}));

TEST(CapturedImagePayloadTest, TheFileNameIsTheNormalisedSuggestion) {
    const CapturedImagePayload payload{.data = "bytes", .suggestedName = u"a/b"_qs};
    EXPECT_EQ(payload.fileName(), u"a-b.png");
}

} // namespace
} // namespace kestrova
