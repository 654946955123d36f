#include "Kestrova/shelf/KeyHint.h"
#include "KestrovaCore/ClipboardItem.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using enum ClipboardItemType;

std::unique_ptr<ClipboardItem> item(ClipboardItemType type, bool pinned = false) {
    return std::make_unique<ClipboardItem>(QStringLiteral("content"), type, std::nullopt, Timestamp{}, pinned,
                                           ItemSource::clipboard);
}

/// Key and label, the command key as a circumflex.
QStringList told(const ClipboardItem& item, ShelfViewMode mode = ShelfViewMode::list) {
    QStringList lines;
    for (const auto& hint : keyHints(item, mode)) {
        auto key =
            hint.symbols.join(QLatin1Char(' ')).replace(QStringLiteral("command"), QStringLiteral("^"));
        lines.append(QStringLiteral("%1%2 %3").arg(key, hint.letter, hint.label));
    }
    return lines;
}

class EditableKeyHintTest : public testing::TestWithParam<ClipboardItemType> {};

TEST_P(EditableKeyHintTest, ATextCanBeEdited) {
    EXPECT_EQ(told(*item(GetParam())), QStringList({u"^C 복사"_qs, u"^P Pin"_qs, u"^E 편집"_qs, u"^K 액션"_qs,
                                                    u"^₩ 그리드"_qs, u"delete.left 삭제"_qs}));
}

INSTANTIATE_TEST_SUITE_P(Types, EditableKeyHintTest, testing::Values(text, rtf, url, color));

TEST(KeyHintTest, AFileCannotBeEdited) {
    EXPECT_EQ(told(*item(file)), QStringList({u"^C 복사"_qs, u"^P Pin"_qs, u"^K 액션"_qs, u"^₩ 그리드"_qs,
                                              u"delete.left 삭제"_qs}));
}

TEST(KeyHintTest, APictureIsEditedAsAPicture) {
    const auto picture = item(image);
    picture->setImageData(QByteArray("png"));
    EXPECT_EQ(told(*picture), QStringList({u"^C 복사"_qs, u"^P Pin"_qs, u"^E 이미지 편집"_qs, u"^K 액션"_qs,
                                           u"^₩ 그리드"_qs, u"delete.left 삭제"_qs}));
}

TEST(KeyHintTest, APictureWithoutDataCannotBeEdited) {
    EXPECT_EQ(told(*item(image)).filter(u"^E"_qs), QStringList());
}

TEST(KeyHintTest, APinnedItemIsUnpinned) {
    EXPECT_TRUE(told(*item(file, true)).contains(u"^P 핀 해제"_qs));
}

TEST(KeyHintTest, TheViewModeThatTheKeyLeadsToIsTold) {
    EXPECT_TRUE(told(*item(file), ShelfViewMode::grid).contains(u"^₩ 리스트"_qs));
}

} // namespace
} // namespace kestrova
