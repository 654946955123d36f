#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/detail/RGBA.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

ItemRow rowOf(ClipboardItemType type, const QString& content, std::size_t position = 0) {
    return ItemRow::of(ClipboardItem(content, type, std::nullopt, moment(0), false, ItemSource::clipboard),
                       position);
}

QString textOf(ClipboardItemType type, const QString& content) {
    return rowOf(type, content).primaryText;
}

TEST(ItemRowTest, EachTypeHasItsSymbol) {
    EXPECT_EQ(rowOf(ClipboardItemType::text, {}).symbol, u"doc.text");
    EXPECT_EQ(rowOf(ClipboardItemType::rtf, {}).symbol, u"doc.text");
    EXPECT_EQ(rowOf(ClipboardItemType::url, {}).symbol, u"link");
    EXPECT_EQ(rowOf(ClipboardItemType::file, {}).symbol, u"paperclip");
    EXPECT_EQ(rowOf(ClipboardItemType::image, {}).symbol, u"photo");
    EXPECT_EQ(rowOf(ClipboardItemType::color, {}).symbol, u"paintpalette");
}

TEST(ItemRowTest, TheFirstNineRowsHaveTheirDigitAndTheTenthHasNone) {
    for (int position = 0; position < 9; ++position)
        EXPECT_EQ(rowOf(ClipboardItemType::text, {}, static_cast<std::size_t>(position)).quickPasteIndex,
                  position + 1);
    EXPECT_EQ(rowOf(ClipboardItemType::text, {}, 9).quickPasteIndex, std::nullopt);
}

TEST(ItemRowTest, AnImageTellsItsSizeOnlyIfBothSidesAreStored) {
    ClipboardItem image({}, ClipboardItemType::image, std::nullopt, moment(0), false, ItemSource::clipboard);
    EXPECT_EQ(primaryText(image), u"Image");
    image.setWidth(640);
    EXPECT_EQ(primaryText(image), u"Image");
    image.setHeight(480);
    EXPECT_EQ(primaryText(image), u"Image (640 × 480)");
    image.setWidth(std::nullopt);
    EXPECT_EQ(primaryText(image), u"Image");
}

TEST(ItemRowTest, AThumbnailIsWantedOnlyOfAnImageWithData) {
    ClipboardItem image({}, ClipboardItemType::image, std::nullopt, moment(0), false, ItemSource::clipboard);
    EXPECT_FALSE(ItemRow::of(image, 0).hasThumbnail);
    image.setImageData(QByteArray("bytes"));
    EXPECT_TRUE(ItemRow::of(image, 0).hasThumbnail);
    image.setType(ClipboardItemType::text);
    EXPECT_FALSE(ItemRow::of(image, 0).hasThumbnail);
}

TEST(ItemRowTest, AFileShowsTheLastPartOfItsPath) {
    EXPECT_EQ(textOf(ClipboardItemType::file, u"/home/a/보고서 최종.pdf"_qs), u"보고서 최종.pdf");
    EXPECT_EQ(textOf(ClipboardItemType::file, u"/home/a/folder/"_qs), u"folder");
    EXPECT_EQ(textOf(ClipboardItemType::file, u"name"_qs), u"name");
    EXPECT_EQ(textOf(ClipboardItemType::file, u"/"_qs), u"/");
    EXPECT_EQ(textOf(ClipboardItemType::file, u""_qs), u"");
}

TEST(ItemRowTest, LinksAndColoursStandAsTheyAre) {
    const auto longLink = u" https://example.org/"_qs + QString(300, u'a');
    EXPECT_EQ(textOf(ClipboardItemType::url, longLink), longLink);
    EXPECT_EQ(textOf(ClipboardItemType::color, u" #fff "_qs), u" #fff ");
}

TEST(ItemRowTest, TextIsCutThenFlattenedThenTrimmed) {
    EXPECT_EQ(textOf(ClipboardItemType::text, u"a\nb\r\nc\rd"_qs), u"a b c d");
    EXPECT_EQ(textOf(ClipboardItemType::rtf, u"a\n\nb"_qs), u"a  b");
    EXPECT_EQ(textOf(ClipboardItemType::text, u"  both ends \n"_qs), u"both ends");
    EXPECT_EQ(textOf(ClipboardItemType::text, QString(119, u' ') + u"ab"_qs), u"a");
    EXPECT_EQ(textOf(ClipboardItemType::text, QString(500, u'x')), QString(120, u'x'));
}

TEST(ItemRowTest, ATextOfOnlyNewlinesHasAnEmptyLine) {
    EXPECT_EQ(textOf(ClipboardItemType::text, u"\n\n\r\n"_qs), u"");
}

TEST(ItemRowTest, CharactersAreCountedAsAPersonSeesThem) {
    const auto decomposed = QString(u"\u1112\u1161\u11ab"_qs).repeated(130);
    EXPECT_EQ(textOf(ClipboardItemType::text, decomposed), QString(u"\u1112\u1161\u11ab"_qs).repeated(120));
    const auto family = u"👨‍👩‍👧"_qs;
    EXPECT_EQ(textOf(ClipboardItemType::text, family.repeated(121)), family.repeated(120));
    EXPECT_EQ(textOf(ClipboardItemType::text, QString(119, u'x') + u"e\u0301f"_qs),
              QString(119, u'x') + u"e\u0301"_qs);
    EXPECT_EQ(textOf(ClipboardItemType::text, QString(u"가"_qs).repeated(200)),
              QString(u"가"_qs).repeated(120));
}

TEST(ItemRowTest, OneCharacterMayBeLongerThanAPage) {
    const auto endless = u"e"_qs + QString(100'000, u'\u0301');
    EXPECT_EQ(textOf(ClipboardItemType::text, endless), endless);
}

TEST(ItemRowTest, AColourIsDrawnInItselfOnlyBetweenTheVeryDarkAndTheVeryLight) {
    const auto grey = rowOf(ClipboardItemType::color, u"#808080"_qs);
    EXPECT_EQ(grey.swatch, QColor(128, 128, 128));
    EXPECT_EQ(grey.primaryColor, QColor(128, 128, 128));
    for (const auto& extreme : {u"#000000"_qs, u"#ffffff"_qs, u"#262626"_qs, u"#d9d9d9"_qs}) {
        const auto row = rowOf(ClipboardItemType::color, extreme);
        EXPECT_TRUE(row.swatch) << qPrintable(extreme);
        // 0x26 is 0.149 and 0xd9 is 0.851.
        EXPECT_FALSE(row.primaryColor) << qPrintable(extreme);
    }
    EXPECT_TRUE(rowOf(ClipboardItemType::color, u"#272727"_qs).primaryColor);
    EXPECT_TRUE(rowOf(ClipboardItemType::color, u"#d8d8d8"_qs).primaryColor);
}

TEST(ItemRowTest, ChannelsOutOfRangeCountInFullForTheLuminanceAndAreDrawnInForThePainting) {
    EXPECT_FALSE(rowOf(ClipboardItemType::color, u"rgb(300, 300, 0)"_qs).primaryColor) << "1.09";
    const auto dim = rowOf(ClipboardItemType::color, u"rgb(-255, 0, 510)"_qs);
    EXPECT_EQ(dim.swatch, QColor(0, 0, 255));
    EXPECT_FALSE(dim.primaryColor) << "-0.07";
    EXPECT_EQ(rowOf(ClipboardItemType::color, u"rgb(-255, 255, 0)"_qs).primaryColor, QColor(0, 255, 0));
    EXPECT_NEAR(relativeLuminance({2, -1, 0.5, 1}), -0.2539, 1e-12);
}

TEST(ItemRowTest, AColourThatCannotBeReadHasNeitherSwatchNorColour) {
    const auto row = rowOf(ClipboardItemType::color, u"rgb(1, 2)"_qs);
    EXPECT_FALSE(row.swatch);
    EXPECT_FALSE(row.primaryColor);
    EXPECT_EQ(row.primaryText, u"rgb(1, 2)");
}

TEST(ItemRowTest, OnlyColoursHaveASwatch) {
    EXPECT_FALSE(rowOf(ClipboardItemType::text, u"#808080"_qs).swatch);
    EXPECT_FALSE(rowOf(ClipboardItemType::text, u"#808080"_qs).primaryColor);
}

TEST(ItemRowTest, ThePinIsTheItems) {
    ClipboardItem item(u"a"_qs, ClipboardItemType::text, std::nullopt, moment(0), false,
                       ItemSource::clipboard);
    EXPECT_FALSE(ItemRow::of(item, 0).isPinned);
    item.setPinned(true);
    EXPECT_TRUE(ItemRow::of(item, 0).isPinned);
}

} // namespace
} // namespace kestrova
