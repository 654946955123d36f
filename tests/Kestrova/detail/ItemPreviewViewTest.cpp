#include "Kestrova/detail/ItemPreviewView.h"
#include "KestrovaCore/ClipboardItem.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>
#include <vector>

namespace kestrova {
namespace {

class ItemPreviewViewTest : public testing::Test {
protected:
    struct Request {
        std::optional<QByteArray> bytes;
        int width;
        ItemPreviewView::Decoded done;
    };

    static std::shared_ptr<ClipboardItem> itemOf(ClipboardItemType type,
                                                 const std::optional<QByteArray>& imageData = {}) {
        const auto item = std::make_shared<ClipboardItem>(u"content"_qs, type, std::nullopt, Timestamp{},
                                                          false, ItemSource::clipboard);
        item->setImageData(imageData);
        return item;
    }

    std::unique_ptr<ItemPreviewView> viewOf(const std::shared_ptr<ClipboardItem>& item) {
        auto view = std::make_unique<ItemPreviewView>(
            item,
            [this](const StoredImageData& bytes, int width, ItemPreviewView::Decoded done) {
                requests.push_back({bytes.read(), width, std::move(done)});
            },
            [this] { ++closes; });
        view->onRender = [this] { ++renders; };
        return view;
    }

    static QImage picture(int width) {
        QImage image(width, 10, QImage::Format_RGB32);
        image.fill(Qt::red);
        return image;
    }

    std::vector<Request> requests;
    int closes = 0;
    int renders = 0;
};

struct TypeRow {
    ClipboardItemType type;
    QString word;
};

class ItemPreviewViewTypeTest : public ItemPreviewViewTest, public testing::WithParamInterface<TypeRow> {};

TEST_P(ItemPreviewViewTypeTest, TheTitleIsTheWordOfTheType) {
    EXPECT_EQ(viewOf(itemOf(GetParam().type))->title(), GetParam().word);
}

TEST_P(ItemPreviewViewTypeTest, OnlyAPictureIsDecoded) {
    const auto view = viewOf(itemOf(GetParam().type, QByteArray("png")));
    view->viewAppears(600);
    const bool isImage = GetParam().type == ClipboardItemType::image;
    EXPECT_EQ(view->showsPicture(), isImage);
    EXPECT_EQ(requests.size(), isImage ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Types, ItemPreviewViewTypeTest,
                         testing::Values(TypeRow{ClipboardItemType::text, u"Text"_qs},
                                         TypeRow{ClipboardItemType::rtf, u"Text"_qs},
                                         TypeRow{ClipboardItemType::image, u"Image"_qs},
                                         TypeRow{ClipboardItemType::file, u"File"_qs},
                                         TypeRow{ClipboardItemType::url, u"Link"_qs},
                                         TypeRow{ClipboardItemType::color, u"Color"_qs}));

TEST_F(ItemPreviewViewTest, ClosingCallsOnClose) {
    viewOf(itemOf(ClipboardItemType::text))->close();
    EXPECT_EQ(closes, 1);
}

TEST_F(ItemPreviewViewTest, ThePictureIsDecodedWhenTheViewAppearsAndKept) {
    const auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("png")));
    EXPECT_TRUE(requests.empty());
    view->viewAppears(600);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].bytes, QByteArray("png"));
    EXPECT_EQ(requests[0].width, 600);
    EXPECT_FALSE(view->decodedImage);
    requests[0].done(picture(20));
    EXPECT_EQ(renders, 1);
    ASSERT_TRUE(view->decodedImage);
    EXPECT_EQ(*view->decodedImage, picture(20));
}

TEST_F(ItemPreviewViewTest, AViewThatAppearsAgainDoesNotDecodeAgain) {
    const auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("png")));
    view->viewAppears(600);
    requests[0].done(picture(20));
    view->viewAppears(600);
    EXPECT_EQ(requests.size(), 1U);
}

TEST_F(ItemPreviewViewTest, InAWiderViewThePictureIsMadeAnewWhileTheOldOneIsSeen) {
    const auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("png")));
    view->viewAppears(600);
    requests[0].done(picture(600));
    view->viewAppears(800);
    EXPECT_EQ(view->decodedImage->width(), 600);
    requests.at(1).done(picture(800));
    EXPECT_EQ(view->decodedImage->width(), 800);
}

TEST_F(ItemPreviewViewTest, APictureForAFormerWidthThatArrivesLateIsDropped) {
    const auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("png")));
    view->viewAppears(600);
    view->viewAppears(800);
    requests[0].done(picture(600));
    EXPECT_FALSE(view->decodedImage);
}

TEST_F(ItemPreviewViewTest, NothingIsDecodedBeforeThereIsRoom) {
    viewOf(itemOf(ClipboardItemType::image, QByteArray("png")))->viewAppears(0);
    EXPECT_TRUE(requests.empty());
}

TEST_F(ItemPreviewViewTest, APictureThatCannotBeReadIsWaitedForNoLonger) {
    const auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("broken")));
    view->viewAppears(600);
    requests[0].done({});
    ASSERT_TRUE(view->decodedImage);
    EXPECT_TRUE(view->decodedImage->isNull());
    EXPECT_EQ(renders, 1);
}

TEST_F(ItemPreviewViewTest, AnImageWithoutAPictureIsNotWaitedFor) {
    const auto view = viewOf(itemOf(ClipboardItemType::image));
    view->viewAppears(600);
    EXPECT_TRUE(requests.empty());
    ASSERT_TRUE(view->decodedImage);
    EXPECT_TRUE(view->decodedImage->isNull());
    EXPECT_EQ(renders, 1);
}

TEST_F(ItemPreviewViewTest, APictureThatArrivesAfterTheViewHasGoneHarmsNobody) {
    auto view = viewOf(itemOf(ClipboardItemType::image, QByteArray("png")));
    view->viewAppears(600);
    view.reset();
    requests[0].done(picture(20));
    EXPECT_EQ(renders, 0);
}

} // namespace
} // namespace kestrova
