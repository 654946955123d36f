#include "Kestrova/shelf/SpokenItem.h"

#include "KestrovaCore/ClipboardItem.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

ClipboardItem item(const QString& content, ClipboardItemType type, bool pinned = false) {
    return {content, type, std::nullopt, {}, pinned, ItemSource::clipboard};
}

TEST(SpokenItemTest, TellsTheKindTheTextThePinAndTheKeysThatPasteIt) {
    EXPECT_EQ(spokenName(item(u"two\nlines"_qs, ClipboardItemType::text), 0), u"텍스트, two lines, ⌘1");
    EXPECT_EQ(spokenName(item(u"a"_qs, ClipboardItemType::rtf, true), 8), u"텍스트, a, 고정됨, ⌘9");
    EXPECT_EQ(spokenName(item(u"https://a.example"_qs, ClipboardItemType::url), 9),
              u"링크, https://a.example");
    EXPECT_EQ(spokenName(item(u"/tmp/plan.pdf"_qs, ClipboardItemType::file), 20), u"파일, plan.pdf");
    EXPECT_EQ(spokenName(item(u"#FF0000"_qs, ClipboardItemType::color), 20), u"색상, #FF0000");
    EXPECT_EQ(spokenName(item({}, ClipboardItemType::image), 20), u"이미지, Image");
}

TEST(SpokenItemTest, PlacesAreCountedFromOne) {
    EXPECT_EQ(spokenPosition(2, 120), u"3 / 120");
}

} // namespace
} // namespace kestrova
