#include "Kestrova/detail/ActionRows.h"

#include "tests/Kestrova/detail/CardFixture.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QStringList labels(const std::vector<ActionRow>& rows) {
    QStringList labels;
    for (const auto& row : rows)
        labels.append(row.label);
    return labels;
}

/// An item for which each line is there.
class RootRowsTest : public CardFixture {
protected:
    RootRowsTest() {
        item->setFileURLString(u"file:///home/user/shot.png"_qs);
        actions = actionsOf(item);
        actions.onEdit = doing(u"edit");
        actions.onEditImage = doing(u"edit image");
        actions.onRemoveFromCurrentCollection = doing(u"remove");
    }
    std::vector<ActionRow> rows() { return rootRows(actions, doing(u"open collections")); }
    ActionRow row(const QString& label) {
        for (const auto& each : rows())
            if (each.label == label)
                return each;
        ADD_FAILURE() << qPrintable(label);
        return {};
    }
    bool has(const QString& label) { return labels(rows()).contains(label); }

    std::shared_ptr<ClipboardItem> item = insert(u"words"_qs);
    ItemActions actions;
};

TEST_F(RootRowsTest, TheyStandInThisOrder) {
    EXPECT_EQ(labels(rows()),
              QStringList({u"Paste"_qs, u"Copy"_qs, u"Edit"_qs, u"이미지 편집"_qs, u"Preview"_qs, u"Pin"_qs,
                           u"Collection"_qs, u"Share…"_qs, u"이 컬렉션에서 빼기"_qs, u"열기"_qs,
                           u"Finder 에서 보기"_qs, u"Delete"_qs}));
}

struct RootLine {
    const char* name;
    const char16_t* label;
    const char16_t* icon;
    const char16_t* shortcut;
    const char16_t* does;
};

class RootLineTest : public RootRowsTest, public testing::WithParamInterface<RootLine> {};

TEST_P(RootLineTest, HasItsIconItsShortcutAndItsAction) {
    const auto line = row(QString::fromUtf16(GetParam().label));
    EXPECT_EQ(line.icon, QString::fromUtf16(GetParam().icon));
    EXPECT_EQ(line.shortcut.value_or(u"none"_qs), QString::fromUtf16(GetParam().shortcut));
    EXPECT_FALSE(line.disabled);
    line.invoke();
    EXPECT_EQ(done, QStringList{QString::fromUtf16(GetParam().does)});
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RootLineTest,
    testing::Values(
        RootLine{"Paste", u"Paste", u"doc.on.clipboard", u"⏎", u"paste"},
        RootLine{"Copy", u"Copy", u"doc.on.doc", u"⌘C", u"copy"},
        RootLine{"Edit", u"Edit", u"pencil", u"⌘E", u"edit"},
        RootLine{"EditImage", u"이미지 편집", u"pencil.tip.crop.circle", u"⌘E", u"edit image"},
        RootLine{"Preview", u"Preview", u"eye", u"Space", u"preview"},
        RootLine{"Pin", u"Pin", u"pin", u"⌘P", u"toggle pin"},
        RootLine{"Collection", u"Collection", u"rectangle.stack", u"▸", u"open collections"},
        RootLine{"Share", u"Share…", u"square.and.arrow.up", u"none", u"share"},
        RootLine{"RemoveFromCurrentCollection", u"이 컬렉션에서 빼기", u"rectangle.stack.badge.minus",
                 u"none", u"remove"},
        RootLine{"Open", u"열기", u"arrow.up.right.square", u"none", u"open file:///home/user/shot.png"},
        RootLine{"ShowInFinder", u"Finder 에서 보기", u"folder", u"none", u"show file:///home/user/shot.png"},
        RootLine{"Delete", u"Delete", u"trash", u"⌫", u"delete"}),
    [](const auto& line) { return line.param.name; });

TEST_F(RootRowsTest, OnlyDeleteIsDestructive) {
    for (const auto& line : rows())
        EXPECT_EQ(line.destructive, line.label == u"Delete") << qPrintable(line.label);
}

TEST_F(RootRowsTest, APinnedItemCanBeUnpinned) {
    item->setPinned(true);
    EXPECT_EQ(row(u"Unpin"_qs).icon, u"pin.slash"_qs);
    EXPECT_EQ(row(u"Unpin"_qs).shortcut, u"⌘P"_qs);
    EXPECT_FALSE(has(u"Pin"_qs));
}

TEST_F(RootRowsTest, ATextItemHasEditAndNoImageEditing) {
    actions.onEditImage = {};
    EXPECT_TRUE(has(u"Edit"_qs));
    EXPECT_FALSE(has(u"이미지 편집"_qs));
}

TEST_F(RootRowsTest, AnImageHasImageEditingAndNoEdit) {
    actions.onEdit = {};
    EXPECT_TRUE(has(u"이미지 편집"_qs));
    EXPECT_FALSE(has(u"Edit"_qs));
}

TEST_F(RootRowsTest, OutsideOfACollectionThereIsNoneToRemoveItFrom) {
    actions.onRemoveFromCurrentCollection = {};
    EXPECT_FALSE(has(u"이 컬렉션에서 빼기"_qs));
}

class UnopenableRowsTest : public RootRowsTest, public testing::WithParamInterface<const char16_t*> {};

TEST_P(UnopenableRowsTest, WithoutAFileThereIsNothingToOpenOrToShow) {
    item->setFileURLString(*GetParam() ? std::optional(QString::fromUtf16(GetParam())) : std::nullopt);
    EXPECT_FALSE(has(u"열기"_qs));
    EXPECT_FALSE(has(u"Finder 에서 보기"_qs));
}

// Absent, and texts that are no URL.
INSTANTIATE_TEST_SUITE_P(Stored, UnopenableRowsTest,
                         testing::Values(u"", u"/home/user/shot.png", u"http://[broken"));

// Collections

class CollectionRowsTest : public CardFixture {
protected:
    std::vector<ActionRow> rows() { return collectionRows(actions, doing(u"back")); }

    std::shared_ptr<ClipboardItem> item = insert(u"words"_qs);
    ItemActions actions = actionsOf(item);
};

TEST_F(CollectionRowsTest, TheFirstOneGoesBack) {
    const auto first = rows().front();
    EXPECT_EQ(first.icon, u"chevron.left"_qs);
    EXPECT_EQ(first.label, u"뒤로"_qs);
    EXPECT_FALSE(first.shortcut);
    first.invoke();
    EXPECT_EQ(done, QStringList{u"back"_qs});
}

TEST_F(CollectionRowsTest, OneForEachCollectionFollowsInTheirOrder) {
    actions.allCollections = insertCollections({u"Work"_qs, u"읽을 것"_qs, u"Work"_qs});
    EXPECT_EQ(labels(rows()), QStringList({u"뒤로"_qs, u"Work"_qs, u"읽을 것"_qs, u"Work"_qs}));
    rows()[2].invoke();
    EXPECT_EQ(done, QStringList{u"toggle 읽을 것"_qs});
}

TEST_F(CollectionRowsTest, ThoseThatHoldTheItemHaveAMark) {
    actions.allCollections = insertCollections({u"A"_qs, u"B"_qs});
    item->setCollections(std::vector{actions.allCollections[1]});
    EXPECT_EQ(rows()[1].icon, u"circle"_qs);
    EXPECT_EQ(rows()[2].icon, u"checkmark.circle.fill"_qs);
    EXPECT_EQ(membership(rows()[1]), std::optional(false));
    EXPECT_EQ(membership(rows()[2]), std::optional(true));
    EXPECT_EQ(membership(rows()[0]), std::nullopt);
}

TEST_F(CollectionRowsTest, WithoutCollectionsALineThatDoesNothingSaysSo) {
    const auto lines = rows();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1].icon, u"tray"_qs);
    EXPECT_EQ(lines[1].label, u"컬렉션 없음"_qs);
    EXPECT_TRUE(lines[1].disabled);
    EXPECT_FALSE(lines[0].disabled);
}

} // namespace
} // namespace kestrova
