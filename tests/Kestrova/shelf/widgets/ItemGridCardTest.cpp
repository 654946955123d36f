#include "Kestrova/shelf/ItemGridCard.h"

#include "Kestrova/detail/ItemParts.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

using Preview = LinkPreviewCache::Preview;

ClipboardItem itemOf(ClipboardItemType type, const QString& content) {
    return {content, type, std::nullopt, moment(0), false, ItemSource::clipboard};
}

ItemGridCard cardOf(ClipboardItemType type, const QString& content,
                    const std::optional<Preview>& preview = {}) {
    return ItemGridCard::of(itemOf(type, content), preview);
}

QImage picture() {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

TEST(ItemGridCardTest, AnImageWithDataHasAThumbnailAndOneWithoutThePlaceholder) {
    auto image = itemOf(ClipboardItemType::image, {});
    EXPECT_FALSE(ItemGridCard::of(image, {}).hasThumbnail);
    EXPECT_EQ(ItemGridCard::of(image, {}).placeholder, u"photo");
    image.setImageData(QByteArray("bytes"));
    image.setWidth(640);
    image.setHeight(480);
    EXPECT_TRUE(ItemGridCard::of(image, {}).hasThumbnail);
    EXPECT_EQ(ItemGridCard::of(image, {}).caption, u"Image (640 × 480)");
}

TEST(ItemGridCardTest, AColourFillsTheRegionIfItParses) {
    EXPECT_EQ(cardOf(ClipboardItemType::color, u"#ff0000"_qs).swatch, QColor(Qt::red));
    EXPECT_EQ(cardOf(ClipboardItemType::color, u"#ff0000"_qs).caption, u"#ff0000");
    const auto unknown = cardOf(ClipboardItemType::color, u"rgb(1, 2)"_qs);
    EXPECT_EQ(unknown.swatch, std::nullopt);
    EXPECT_EQ(unknown.placeholder, u"paintpalette");
}

TEST(ItemGridCardTest, AFileShowsADocumentAndItsName) {
    const auto card = cardOf(ClipboardItemType::file, u"/home/a/보고서.pdf"_qs);
    EXPECT_EQ(card.placeholder, u"doc");
    EXPECT_EQ(card.caption, u"보고서.pdf");
}

TEST(ItemGridCardTest, ATextShowsItsFirst120CharactersWithTheirLines) {
    for (const auto type : {ClipboardItemType::text, ClipboardItemType::rtf}) {
        EXPECT_EQ(cardOf(type, u" a\nb "_qs).text, u" a\nb "_qs);
        EXPECT_EQ(cardOf(type, u" a\nb "_qs).caption, u"a b");
        EXPECT_EQ(cardOf(type, QString(500, u'x')).text, QString(120, u'x'));
        EXPECT_EQ(cardOf(type, QString(u"👩‍💻"_qs).repeated(121)).text,
                  QString(u"👩‍💻"_qs).repeated(120));
    }
    for (const auto type : {ClipboardItemType::url, ClipboardItemType::file, ClipboardItemType::color,
                            ClipboardItemType::image})
        EXPECT_EQ(cardOf(type, u"a"_qs).text, std::nullopt);
}

TEST(ItemGridCardTest, ALinkOfWhichNothingIsKnownShowsItsHost) {
    const auto card = cardOf(ClipboardItemType::url, u"https://example.org/a/b?c"_qs);
    EXPECT_EQ(card.placeholder, u"link");
    EXPECT_TRUE(card.linkPicture.isNull());
    EXPECT_TRUE(card.title.isEmpty());
    EXPECT_EQ(card.caption, u"example.org");
}

TEST(ItemGridCardTest, ALinkWithoutAHostShowsItselfWhole) {
    EXPECT_EQ(cardOf(ClipboardItemType::url, u"mailto:a@example.org"_qs).caption, u"mailto:a@example.org");
    EXPECT_EQ(cardOf(ClipboardItemType::url, u"http://["_qs).caption, u"http://[");
}

TEST(ItemGridCardTest, ThePageBehindALinkGivesPictureTitleAndFavicon) {
    const auto card = cardOf(ClipboardItemType::url, u"https://example.org/a"_qs,
                             Preview{u"제목"_qs, u"Site"_qs, picture(), picture()});
    EXPECT_EQ(card.linkPicture, picture());
    EXPECT_EQ(card.favicon, picture());
    EXPECT_EQ(card.title, u"제목");
    EXPECT_EQ(card.caption, u"example.org");
}

TEST(ItemGridCardTest, APageWithoutATitleHasOnlyTheHostLine) {
    for (const auto& title : {std::optional<QString>(), std::optional(QString())}) {
        const auto card =
            cardOf(ClipboardItemType::url, u"https://example.org/a"_qs, Preview{title, {}, {}, {}});
        EXPECT_TRUE(card.title.isEmpty());
        EXPECT_EQ(card.caption, u"example.org");
        EXPECT_TRUE(card.linkPicture.isNull());
        EXPECT_EQ(card.placeholder, u"link");
    }
}

TEST(ItemGridCardTest, OnlyLinksLeadToAPage) {
    EXPECT_EQ(linkOf(itemOf(ClipboardItemType::url, u"https://example.org/"_qs)),
              QUrl(u"https://example.org/"_qs));
    EXPECT_EQ(linkOf(itemOf(ClipboardItemType::url, u"http://["_qs)), std::nullopt);
    EXPECT_EQ(linkOf(itemOf(ClipboardItemType::text, u"https://example.org/"_qs)), std::nullopt);
}

TEST(ItemGridCardTest, APinIsShown) {
    auto item = itemOf(ClipboardItemType::text, u"a"_qs);
    EXPECT_FALSE(ItemGridCard::of(item, {}).isPinned);
    item.setPinned(true);
    EXPECT_TRUE(ItemGridCard::of(item, {}).isPinned);
}

} // namespace
} // namespace kestrova
