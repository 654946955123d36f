#include "Kestrova/shelf/widgets/ThumbnailCache.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/StoreFixture.h"

#include <QBuffer>
#include <QTest>

#include <algorithm>
#include <vector>

namespace kestrova {
namespace {

constexpr QSize small{18, 18};
constexpr QSize large{160, 100};

QByteArray png(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QBuffer buffer;
    EXPECT_TRUE(image.save(&buffer, "PNG"));
    return buffer.data();
}

class ThumbnailCacheTest : public StoreFixture {
protected:
    ThumbnailCacheTest() {
        m_cache.placeInSight = [this](ItemID id) -> std::optional<std::size_t> {
            const auto found = std::ranges::find(m_inSight, id);
            return found == m_inSight.end()
                       ? std::nullopt
                       : std::optional{static_cast<std::size_t>(found - m_inSight.begin())};
        };
        m_cache.onArrival = [this](ItemID id) { m_arrived.push_back(id); };
    }

    std::shared_ptr<ClipboardItem> add(const QByteArray& bytes) {
        auto item = std::make_shared<ClipboardItem>(QString(), ClipboardItemType::image, std::nullopt,
                                                    moment(0), false, ItemSource::clipboard);
        item->setImageData(bytes);
        m_context.insert(item);
        EXPECT_TRUE(m_context.save());
        m_inSight.push_back(item->id());
        return item;
    }
    bool waitForArrivals(std::size_t count) {
        return QTest::qWaitFor([&] { return m_arrived.size() >= count; }, 10'000);
    }
    /// Until nothing is under way any more.
    void waitForRest() {
        // The decoder works one after the other and tells in order.
        bool isAtRest = false;
        m_decoder.decode(StoredImageData(QByteArray()), small, PictureDecoder::Fit::filling,
                         [&](const QImage&) { isAtRest = true; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isAtRest; }, 10'000));
    }

    ModelContext m_context{*m_container};
    QtMainQueue m_queue;
    PictureDecoder m_decoder{m_queue};
    ThumbnailCache m_cache{m_queue, m_decoder};
    std::vector<ItemID> m_inSight;
    std::vector<ItemID> m_arrived;
};

TEST_F(ThumbnailCacheTest, AThumbnailComesLaterInTheSizeThatWasAskedFor) {
    const auto item = add(png({400, 300}, Qt::red));
    EXPECT_EQ(m_cache.thumbnail(item, large), std::nullopt);
    ASSERT_TRUE(waitForArrivals(1));
    EXPECT_EQ(m_arrived, std::vector{item->id()});
    const auto thumbnail = m_cache.thumbnail(item, large);
    ASSERT_TRUE(thumbnail);
    EXPECT_EQ(thumbnail->size(), large);
    EXPECT_EQ(thumbnail->pixelColor(80, 50), QColor(Qt::red));
}

TEST_F(ThumbnailCacheTest, AskingAgainDecodesOnce) {
    const auto item = add(png({40, 30}, Qt::red));
    for (int i = 0; i < 5; ++i)
        m_cache.thumbnail(item, small);
    ASSERT_TRUE(waitForArrivals(1));
    for (int i = 0; i < 5; ++i)
        m_cache.thumbnail(item, small);
    waitForRest();
    EXPECT_EQ(m_arrived.size(), 1U);
}

TEST_F(ThumbnailCacheTest, APictureThatIsNoneIsNotTriedAgain) {
    const auto item = add("no picture");
    m_cache.thumbnail(item, small);
    ASSERT_TRUE(waitForArrivals(1));
    const auto thumbnail = m_cache.thumbnail(item, small);
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(thumbnail->isNull());
    waitForRest();
    EXPECT_EQ(m_arrived.size(), 1U);
}

TEST_F(ThumbnailCacheTest, AnotherSizeIsMadeAnewAndTheFirstStandsInUntilThen) {
    const auto item = add(png({400, 300}, Qt::red));
    m_cache.thumbnail(item, small);
    ASSERT_TRUE(waitForArrivals(1));
    EXPECT_EQ(m_cache.thumbnail(item, large).value().size(), small);
    ASSERT_TRUE(waitForArrivals(2));
    EXPECT_EQ(m_cache.thumbnail(item, large).value().size(), large);
    EXPECT_EQ(m_cache.size(), large.width() * large.height() * 4);
}

TEST_F(ThumbnailCacheTest, AnEditedPictureIsMadeAnew) {
    const auto item = add(png({40, 30}, Qt::red));
    m_cache.thumbnail(item, small);
    ASSERT_TRUE(waitForArrivals(1));
    item->setImageData(png({41, 31}, Qt::blue));
    EXPECT_EQ(m_cache.thumbnail(item, small).value().pixelColor(9, 9), QColor(Qt::red));
    ASSERT_TRUE(waitForArrivals(2));
    EXPECT_EQ(m_cache.thumbnail(item, small).value().pixelColor(9, 9), QColor(Qt::blue));
}

TEST_F(ThumbnailCacheTest, WhatIsOutOfSightIsNotDecoded) {
    const auto passed = add(png({40, 30}, Qt::red));
    const auto seen = add(png({40, 30}, Qt::blue));
    m_cache.thumbnail(passed, small);
    m_cache.thumbnail(seen, small);
    std::erase(m_inSight, passed->id());
    ASSERT_TRUE(waitForArrivals(1));
    waitForRest();
    EXPECT_EQ(m_arrived, std::vector{seen->id()});
    EXPECT_EQ(m_cache.thumbnail(passed, small), std::nullopt);
}

TEST_F(ThumbnailCacheTest, WhatIsSeenIsDecodedAsTheEyeReads) {
    std::vector<std::shared_ptr<ClipboardItem>> items;
    for (int i = 0; i < 4; ++i)
        items.push_back(add(png({40, 30}, Qt::red)));
    for (const auto index : {2U, 0U, 3U, 1U})
        m_cache.thumbnail(items[index], small);
    ASSERT_TRUE(waitForArrivals(4));
    EXPECT_EQ(m_arrived, m_inSight);
}

TEST_F(ThumbnailCacheTest, ADeletedItemIsNotDecoded) {
    const auto item = add(png({40, 30}, Qt::red));
    const auto other = add(png({40, 30}, Qt::red));
    m_cache.thumbnail(item, small);
    m_cache.thumbnail(other, small);
    m_context.remove(*item);
    ASSERT_TRUE(waitForArrivals(1));
    waitForRest();
    EXPECT_EQ(m_arrived, std::vector{other->id()});
}

TEST_F(ThumbnailCacheTest, ForgottenWishesAreNotFulfilled) {
    const auto item = add(png({40, 30}, Qt::red));
    m_cache.thumbnail(item, small);
    m_cache.forgetWishes();
    waitForRest();
    EXPECT_TRUE(m_arrived.empty());
}

TEST_F(ThumbnailCacheTest, KeepsNoMoreBytesThanItMay) {
    m_cache.setCapacity(1024 * 1024);
    std::vector<std::shared_ptr<ClipboardItem>> items;
    constexpr std::size_t count = 40;
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(add(png({200, 120}, Qt::red)));
    for (const auto& item : items)
        m_cache.thumbnail(item, large);
    ASSERT_TRUE(waitForArrivals(count));
    EXPECT_LE(m_cache.size(), 1024 * 1024);
    EXPECT_GT(m_cache.size(), 512 * 1024);
    EXPECT_TRUE(m_cache.thumbnail(items.back(), large));
    EXPECT_FALSE(m_cache.thumbnail(items.front(), large));
    m_cache.clear();
    EXPECT_EQ(m_cache.size(), 0);
}

TEST_F(ThumbnailCacheTest, APictureInMemoryIsScaledOnce) {
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(Qt::green);
    const auto first = m_cache.filled(picture, large);
    EXPECT_EQ(first.size(), large);
    EXPECT_EQ(m_cache.filled(picture, large).cacheKey(), first.cacheKey());
    EXPECT_EQ(m_cache.filled(picture, small).size(), small);
}

TEST_F(ThumbnailCacheTest, ThePictureOfADeletedItemIsDroppedAndNoOther) {
    const auto item = add(png({40, 30}, Qt::red));
    const auto other = add(png({40, 30}, Qt::blue));
    m_cache.thumbnail(item, small);
    m_cache.thumbnail(other, small);
    ASSERT_TRUE(waitForArrivals(2));
    const auto both = m_cache.size();
    m_cache.forgetDeleted();
    EXPECT_EQ(m_cache.size(), both);
    m_context.remove(*item);
    m_cache.forgetDeleted();
    EXPECT_EQ(m_cache.size(), both / 2);
    EXPECT_TRUE(m_cache.thumbnail(other, small));
}

TEST_F(ThumbnailCacheTest, NoItemIsHeldForTheSakeOfItsPicture) {
    auto item = add(png({40, 30}, Qt::red));
    const std::weak_ptr seen = item;
    m_cache.thumbnail(item, small);
    item.reset();
    EXPECT_TRUE(seen.expired());
    waitForRest();
    EXPECT_TRUE(m_arrived.empty());
}

TEST_F(ThumbnailCacheTest, WhileSizesChangeAPictureInMemoryIsNotScaledAnew) {
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(Qt::green);
    int settled = 0;
    m_cache.onSettled = [&] { ++settled; };
    m_cache.awaitSettledSizes();
    EXPECT_EQ(m_cache.filled(picture, small).size(), small);
    for (int width = 100; width < 110; ++width) {
        m_cache.awaitSettledSizes();
        EXPECT_EQ(m_cache.filled(picture, {width, 100}).size(), small);
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return settled > 0; }, 10'000));
    EXPECT_EQ(settled, 1);
    EXPECT_EQ(m_cache.filled(picture, large).size(), large);
}

} // namespace
} // namespace kestrova
