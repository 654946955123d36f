#include "Kestrova/shelf/ItemHandover.h"

#include "tests/Kestrova/shelf/ShelfFixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;

class ItemHandoverTest : public ShelfFixture {
protected:
    std::shared_ptr<ClipboardItem> fileItem(const QString& url) {
        const auto item = add(u"report.pdf"_s, {.type = ClipboardItemType::file});
        item->setFileURLString(url);
        return item;
    }
    void share(const std::shared_ptr<ClipboardItem>& item) {
        act([&] { view.share(item); });
    }
    int asked() const { return static_cast<int>(std::ranges::count(panel.calls, "pickShareTarget")); }

    const ShareTarget target{.identifier = u"editor"_s, .name = u"Editor"_s, .icon = {}};
};

TEST_F(ItemHandoverTest, AFileIsOpenedAndTheShelfStepsAside) {
    const auto item = fileItem(u"file:///home/a%20b.pdf"_s);
    act([&] { view.openFile(*item); });
    EXPECT_EQ(workspace.opened, QList<QUrl>{QUrl(u"file:///home/a%20b.pdf"_s)});
    EXPECT_EQ(stepsAside, 1);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ItemHandoverTest, AFileIsRevealedAndTheShelfStepsAside) {
    const auto item = fileItem(u"file:///home/a.pdf"_s);
    act([&] { view.revealFile(*item); });
    EXPECT_EQ(workspace.revealed, QList<QUrl>{QUrl(u"file:///home/a.pdf"_s)});
    EXPECT_EQ(stepsAside, 1);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ItemHandoverTest, WhatIsNoFileIsNeitherOpenedNorRevealed) {
    for (const auto& item : {add(u"words"_s), fileItem(u"/a/bare/path"_s)})
        act([&] {
            view.openFile(*item);
            view.revealFile(*item);
        });
    EXPECT_THAT(workspace.opened, IsEmpty());
    EXPECT_THAT(workspace.revealed, IsEmpty());
    EXPECT_EQ(stepsAside, 0);
}

TEST_F(ItemHandoverTest, ThePickerOpensOnTheNextTurn) {
    sharing.all = {target};
    share(add(u"words"_s));
    EXPECT_EQ(asked(), 0);
    queue.turn();
    EXPECT_EQ(asked(), 1);
    ASSERT_EQ(panel.offeredTargets.size(), 1U);
    EXPECT_EQ(panel.offeredTargets.front().identifier, u"editor");
    EXPECT_THAT(sharing.shared, IsEmpty());
}

TEST_F(ItemHandoverTest, TheChosenApplicationGetsTheItemAndTheShelfStepsAside) {
    share(add(u"words"_s));
    queue.turn();
    panel.onSharePicked(target);
    ASSERT_EQ(sharing.shared.size(), 1U);
    EXPECT_EQ(sharing.shared.front().first.text, u"words"_s);
    EXPECT_EQ(sharing.shared.front().second, u"editor");
    EXPECT_EQ(stepsAside, 1);
}

TEST_F(ItemHandoverTest, WithoutAChoiceNothingIsHandedOver) {
    share(add(u"words"_s));
    queue.turn();
    EXPECT_THAT(sharing.shared, IsEmpty());
    EXPECT_EQ(stepsAside, 0);
}

TEST_F(ItemHandoverTest, AnItemThatIsDeletedWithinTheTurnIsNotShared) {
    const auto item = add(u"words"_s);
    share(item);
    deleteElsewhere(item->id());
    queue.turn();
    EXPECT_EQ(asked(), 0);
}

TEST_F(ItemHandoverTest, AFileIsSharedAsLongAsItExistsAndThenByItsPath) {
    const QTemporaryDir folder;
    const auto path = folder.filePath(u"a b.txt"_s);
    const auto item = fileItem(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
    EXPECT_EQ(ItemHandover::sharedContent(*item).text, u"report.pdf"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(ItemHandover::sharedContent(*item).file, QUrl::fromLocalFile(path));
    EXPECT_EQ(ItemHandover::sharedContent(*item).text, std::nullopt);
}

TEST_F(ItemHandoverTest, APictureIsSharedAsItsBytesAndWithoutAnyAsItsText) {
    const auto item = add(u"Image"_s, {.type = ClipboardItemType::image, .imageData = QByteArray("PNG")});
    const auto shared = ItemHandover::sharedContent(*item);
    ASSERT_TRUE(shared.picture);
    EXPECT_EQ(shared.text, std::nullopt);
    EXPECT_EQ(shared.picture(), QByteArray("PNG"));
    EXPECT_EQ(ItemHandover::sharedContent(*add(u"Image"_s, {.type = ClipboardItemType::image})).text,
              u"Image"_s);
}

TEST_F(ItemHandoverTest, APictureIsReadWhenItIsHandedOverAndNotToListTheApplications) {
    const auto item = add(u"Image"_s, {.type = ClipboardItemType::image, .imageData = QByteArray("before")});
    share(item);
    queue.turn();
    ASSERT_EQ(sharing.asked.size(), 1U);
    // Bytes that had been read to list the applications would be these.
    ForeignConnection(storeFile()).execute("UPDATE ClipboardItem SET imageData = CAST('after' AS BLOB)");
    panel.onSharePicked(target);
    ASSERT_EQ(sharing.shared.size(), 1U);
    EXPECT_EQ(sharing.shared.front().first.picture(), QByteArray("after"));
}

struct SharedText {
    ClipboardItemType type;
    QString content;
    bool isLink;
};

class SharedTextTest : public ItemHandoverTest, public ::testing::WithParamInterface<SharedText> {};

TEST_P(SharedTextTest, OnlyAWebAddressIsALink) {
    const auto& [type, content, isLink] = GetParam();
    const auto shared = ItemHandover::sharedContent(*add(content, {.type = type}));
    EXPECT_EQ(shared.link.has_value(), isLink);
    EXPECT_EQ(shared.text.has_value(), !isLink);
}

INSTANTIATE_TEST_SUITE_P(
    Contents, SharedTextTest,
    ::testing::Values(SharedText{ClipboardItemType::url, u"https://example.org/a?b=c#d"_s, true},
                      SharedText{ClipboardItemType::url, u" http://example.org "_s, true},
                      SharedText{ClipboardItemType::url, u"https://"_s, false},
                      SharedText{ClipboardItemType::url, u"javascript:alert(1)"_s, false},
                      SharedText{ClipboardItemType::url, u"mailto:kim@example.org"_s, false},
                      SharedText{ClipboardItemType::text, u"https://example.org"_s, false},
                      SharedText{ClipboardItemType::rtf, u"words"_s, false},
                      SharedText{ClipboardItemType::color, u"#ff0000"_s, false}));

} // namespace
} // namespace kestrova
