#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

using ClipboardItemTest = StoreFixture;

TEST(ClipboardItemTypeTest, HasTheSixKindsInTheirOrderUnderTheirRawTexts) {
    QStringList raw;
    for (const auto type : allClipboardItemTypes) {
        raw.append(rawText(type).toString());
        EXPECT_EQ(clipboardItemType(rawText(type)), type);
    }
    EXPECT_EQ(raw, (QStringList{QStringLiteral("text"), QStringLiteral("rtf"), QStringLiteral("image"),
                                QStringLiteral("file"), QStringLiteral("url"), QStringLiteral("color")}));
    EXPECT_EQ(clipboardItemType(u"Text"), std::nullopt);
    EXPECT_EQ(clipboardItemType(u""), std::nullopt);
}

TEST(ItemSourceTest, HasTheTwoOriginsInTheirOrderUnderTheirRawTexts) {
    ASSERT_EQ(allItemSources.size(), 2u);
    EXPECT_EQ(rawText(allItemSources[0]), u"clipboard");
    EXPECT_EQ(rawText(allItemSources[1]), u"screenshot");
    for (const auto source : allItemSources)
        EXPECT_EQ(itemSource(rawText(source)), source);
    EXPECT_EQ(itemSource(u"camera"), std::nullopt);
}

TEST_F(ClipboardItemTest, ANewlyConstructedItemHasWhatItWasGivenAndNothingElse) {
    const ClipboardItem item(QStringLiteral("x"), ClipboardItemType::url, QStringLiteral("org.app"),
                             moment(5), true, ItemSource::screenshot);
    EXPECT_EQ(item.content(), u"x");
    EXPECT_EQ(item.rawType(), QStringLiteral("url"));
    EXPECT_EQ(item.sourceApp(), QStringLiteral("org.app"));
    EXPECT_EQ(item.createdAt(), moment(5));
    EXPECT_TRUE(item.pinned());
    EXPECT_EQ(item.rawSource(), QStringLiteral("screenshot"));
    EXPECT_FALSE(item.collections());
    EXPECT_FALSE(item.imageData());
    EXPECT_FALSE(item.hasImageData());
    EXPECT_FALSE(item.width());
    EXPECT_FALSE(item.height());
    EXPECT_FALSE(item.fileURLString());
    EXPECT_FALSE(item.fileSize());
    EXPECT_FALSE(item.ocrText());
}

TEST_F(ClipboardItemTest, ARawTypeThatIsNoCaseReadsAsTextAndIsLeftAsItIsUntilTypeIsWritten) {
    const auto item = makeText(QStringLiteral("x"));
    for (const auto& raw : {std::optional<QString>{QStringLiteral("video")}, std::optional<QString>{}}) {
        item->setRawType(raw);
        EXPECT_EQ(item->type(), ClipboardItemType::text);
        EXPECT_EQ(item->rawType(), raw);
    }
    item->setType(ClipboardItemType::url);
    EXPECT_EQ(item->rawType(), QStringLiteral("url"));
}

TEST_F(ClipboardItemTest, ARowWithAnUnknownKindSurvivesTheStore) {
    ForeignConnection(storeFile())
        .execute(
            "INSERT INTO ClipboardItem (content, rawType, createdAt, pinned) VALUES ('x', 'video', 1, 0)");
    ModelContext context(*m_container);
    const auto items = context.fetch({});
    ASSERT_TRUE(items);
    ASSERT_EQ(items.value().size(), 1u);
    EXPECT_EQ(items.value()[0]->type(), ClipboardItemType::text);
    EXPECT_EQ(items.value()[0]->rawType(), QStringLiteral("video"));
    EXPECT_EQ(items.value()[0]->source(), ItemSource::clipboard);
}

TEST_F(ClipboardItemTest, AnAbsentOrUnknownRawSourceReadsAsClipboard) {
    const auto item = makeText(QStringLiteral("x"));
    item->setRawSource(std::nullopt);
    EXPECT_EQ(item->source(), ItemSource::clipboard);
    item->setRawSource(QStringLiteral("camera"));
    EXPECT_EQ(item->source(), ItemSource::clipboard);
    item->setSource(ItemSource::screenshot);
    EXPECT_EQ(item->rawSource(), QStringLiteral("screenshot"));
    EXPECT_EQ(item->source(), ItemSource::screenshot);
}

TEST_F(ClipboardItemTest, TwoRowsWithTheSameContentAreUnequal) {
    ModelContext context(*m_container);
    const auto a = makeText(QStringLiteral("same"));
    const auto b = makeText(QStringLiteral("same"));
    EXPECT_FALSE(*a == *b);
    context.insert(a);
    context.insert(b);
    EXPECT_FALSE(*a == *b);
    ASSERT_TRUE(context.save());
    EXPECT_FALSE(*a == *b);
    EXPECT_TRUE(*a == *a);
}

TEST_F(ClipboardItemTest, EqualityIsThatOfTheIdentifierAcrossContexts) {
    ModelContext here(*m_container);
    ModelContext there(*m_container);
    const auto item = makeText(QStringLiteral("x"));
    here.insert(item);
    ASSERT_TRUE(here.save());
    const auto other = there.item(item->id());
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other.get(), item.get());
    EXPECT_TRUE(*other == *item);
}

TEST_F(ClipboardItemTest, EveryFieldComesBackFromDisk) {
    {
        ModelContext context(*m_container);
        const auto collection = std::make_shared<KovaCollection>(QStringLiteral("작업"), 1, std::nullopt,
                                                                 QStringLiteral("#ff0000"));
        context.insert(collection);
        const auto item = std::make_shared<ClipboardItem>(QStringLiteral("한글 \u0001\n끝"),
                                                          ClipboardItemType::image, QStringLiteral("org.app"),
                                                          moment(9), true, ItemSource::screenshot);
        item->setImageData(QByteArray("\x89PNG\0bytes", 10));
        item->setWidth(3);
        item->setHeight(4);
        item->setFileURLString(QStringLiteral("file:///tmp/a%20b.png"));
        item->setFileSize(10);
        item->setOcrText(QStringLiteral("words"));
        item->setCollections(std::vector{collection});
        context.insert(item);
        ASSERT_TRUE(context.save());
    }
    m_container.reset();
    m_container = openedByAnotherProcess();
    ModelContext context(*m_container);
    const auto items = context.fetch({});
    ASSERT_TRUE(items);
    ASSERT_EQ(items.value().size(), 1u);
    const auto& item = *items.value()[0];
    EXPECT_EQ(item.content(), QStringLiteral("한글 \u0001\n끝"));
    EXPECT_EQ(item.type(), ClipboardItemType::image);
    EXPECT_EQ(item.sourceApp(), QStringLiteral("org.app"));
    EXPECT_EQ(item.createdAt(), moment(9));
    EXPECT_TRUE(item.pinned());
    EXPECT_EQ(item.source(), ItemSource::screenshot);
    EXPECT_EQ(item.imageData(), QByteArray("\x89PNG\0bytes", 10));
    EXPECT_EQ(item.width(), 3);
    EXPECT_EQ(item.height(), 4);
    EXPECT_EQ(item.fileURLString(), QStringLiteral("file:///tmp/a%20b.png"));
    EXPECT_EQ(item.fileSize(), 10);
    EXPECT_EQ(item.ocrText(), QStringLiteral("words"));
    const auto collections = item.collections();
    ASSERT_TRUE(collections);
    ASSERT_EQ(collections->size(), 1u);
    EXPECT_EQ(collections->front()->name(), QStringLiteral("작업"));
    EXPECT_EQ(collections->front()->colorHex(), QStringLiteral("#ff0000"));
    EXPECT_FALSE(collections->front()->icon());
}

TEST(TimestampTest, IsShownInIso8601WithMilliseconds) {
    EXPECT_EQ(iso8601(Timestamp{std::chrono::milliseconds{0}}), u"1970-01-01T00:00:00.000Z");
    EXPECT_EQ(iso8601(Timestamp{std::chrono::milliseconds{1'709'251'199'007}}), u"2024-02-29T23:59:59.007Z");
}

} // namespace
} // namespace kestrova
