#include "Kestrova/clipboard/PasteService.h"

#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/FakePasteboard.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

std::shared_ptr<ClipboardItem> item(ClipboardItemType type, const char* content) {
    return std::make_shared<ClipboardItem>(QString::fromUtf8(content), type, std::nullopt, Timestamp{}, false,
                                           ItemSource::clipboard);
}

TEST(PasteServiceTest, TextOfEveryKindIsPlainTextAndNothingElse) {
    for (const auto type :
         {ClipboardItemType::text, ClipboardItemType::rtf, ClipboardItemType::url, ClipboardItemType::color})
        EXPECT_EQ(PasteService::entry(*item(type, " as copied \n")),
                  PasteboardEntry(PlainText{QStringLiteral(" as copied \n")}));
}

TEST(PasteServiceTest, AnImageIsItsPngOnlyNeverAFileReference) {
    const auto image = item(ClipboardItemType::image, "/tmp/a.png");
    image->setImageData(QByteArray("png bytes"));
    image->setFileURLString(QStringLiteral("file:///tmp/a.png"));
    EXPECT_EQ(PasteService::entry(*image), PasteboardEntry(PngData{"png bytes"}));
}

TEST(PasteServiceTest, AnImageWithoutDataIsItsContent) {
    EXPECT_EQ(PasteService::entry(*item(ClipboardItemType::image, "Image")),
              PasteboardEntry(PlainText{QStringLiteral("Image")}));
}

TEST(PasteServiceTest, AFileIsAReference) {
    const auto file = item(ClipboardItemType::file, "/tmp/a b");
    file->setFileURLString(QStringLiteral("file:///tmp/a%20b"));
    EXPECT_EQ(PasteService::entry(*file),
              PasteboardEntry(FileReference{QUrl(QStringLiteral("file:///tmp/a%20b"))}));
}

TEST(PasteServiceTest, AFileWithoutAUrlThatParsesIsItsPath) {
    const auto file = item(ClipboardItemType::file, "/tmp/a");
    EXPECT_EQ(PasteService::entry(*file), PasteboardEntry(PlainText{QStringLiteral("/tmp/a")}));
    for (const auto* notAUrl : {"", "http://[", "no scheme"}) {
        file->setFileURLString(QString::fromUtf8(notAUrl));
        EXPECT_EQ(PasteService::entry(*file), PasteboardEntry(PlainText{QStringLiteral("/tmp/a")}))
            << notAUrl;
    }
}

TEST(PasteServiceTest, AWriteMovesTheCounterAndLeavesTheMarkToTheCaller) {
    FakePasteboard pasteboard;
    const auto before = pasteboard.changeCount();
    PasteService::write(*item(ClipboardItemType::text, "a"), pasteboard);
    EXPECT_EQ(pasteboard.changeCount(), before + 1);
    EXPECT_EQ(pasteboard.written(), std::vector<PasteboardEntry>{PlainText{QStringLiteral("a")}});
}

} // namespace
} // namespace kestrova
