#include "KestrovaCore/StoredImageData.h"
#include "tests/support/LogCapture.h"
#include "tests/support/StoreFixture.h"

#include <QFile>

#include <thread>

namespace kestrova {
namespace {

class StoredImageDataTest : public StoreFixture {
protected:
    std::shared_ptr<ClipboardItem> insert(const std::optional<QByteArray>& bytes) {
        auto item = std::make_shared<ClipboardItem>(QString(), ClipboardItemType::image, std::nullopt,
                                                    moment(0), false, ItemSource::clipboard);
        item->setImageData(bytes);
        m_context.insert(item);
        return item;
    }
    std::shared_ptr<ClipboardItem> save(const std::optional<QByteArray>& bytes) {
        auto item = insert(bytes);
        EXPECT_TRUE(m_context.save());
        return item;
    }
    static std::optional<QByteArray> readElsewhere(const StoredImageData& data) {
        std::optional<QByteArray> read;
        std::thread([&] { read = data.read(); }).join();
        return read;
    }

    ModelContext m_context{*m_container};
};

TEST_F(StoredImageDataTest, ASavedPictureIsReadOnAnotherThread) {
    const QByteArray bytes(3'000'000, 'p');
    EXPECT_EQ(readElsewhere(save(bytes)->storedImageData()), bytes);
}

TEST_F(StoredImageDataTest, AnUnsavedPictureIsReadFromMemory) {
    EXPECT_EQ(readElsewhere(insert(QByteArray("bytes"))->storedImageData()), QByteArray("bytes"));
    const ClipboardItem free({}, ClipboardItemType::image, std::nullopt, moment(0), false,
                             ItemSource::clipboard);
    EXPECT_EQ(free.storedImageData().read(), std::nullopt);
}

TEST_F(StoredImageDataTest, AnItemWithoutAPictureHasNone) {
    EXPECT_EQ(readElsewhere(save(std::nullopt)->storedImageData()), std::nullopt);
}

TEST_F(StoredImageDataTest, AChangedPictureIsReadAsItIsNow) {
    const auto item = save(QByteArray("before"));
    const auto data = item->storedImageData();
    item->setImageData(QByteArray("after"));
    EXPECT_EQ(item->storedImageData().read(), QByteArray("after"));
    EXPECT_EQ(data.read(), QByteArray("before"));
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(readElsewhere(data), QByteArray("after"));
}

TEST_F(StoredImageDataTest, ADeletedRowHasNoneAndAHandleThatIsHeldKeepsItsBytes) {
    const auto item = save(QByteArray("bytes"));
    const auto data = item->storedImageData();
    m_context.remove(*item);
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(data.read(), std::nullopt);
    EXPECT_EQ(item->storedImageData().read(), QByteArray("bytes"));
}

TEST_F(StoredImageDataTest, AWriterIsNotWaitedFor) {
    const auto data = save(QByteArray("bytes"))->storedImageData();
    ForeignConnection writer(storeFile());
    writer.execute("BEGIN IMMEDIATE");
    writer.execute("UPDATE ClipboardItem SET imageData = x'00'");
    EXPECT_EQ(readElsewhere(data), QByteArray("bytes"));
    writer.execute("ROLLBACK");
}

TEST_F(StoredImageDataTest, AFileThatHasGoneIsLoggedAndNotMadeAnew) {
    const auto path = m_directory.filePath(QStringLiteral("gone.sqlite"));
    LogCapture log;
    EXPECT_EQ(StoredImageData(path, ItemID{1}).read(), std::nullopt);
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace kestrova
