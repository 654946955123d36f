#include "Kestrova/shelf/CollectionEditSheet.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using Mode = CollectionEditSheet::Mode;
using testing::ElementsAre;

// The sheet alone

struct Submitted {
    QString name;
    std::optional<QString> colorHex;

    bool operator==(const Submitted&) const = default;
};

class CollectionEditSheetTest : public testing::Test {
protected:
    CollectionEditSheet::Submit collect() {
        return [this](const QString& name, const std::optional<QString>& hex) {
            submitted.push_back({name, hex});
        };
    }

    std::vector<Submitted> submitted;
    int cancels = 0;
    CollectionEditSheet sheet{Mode::create(), collect(), [this] { ++cancels; }};
};

TEST_F(CollectionEditSheetTest, ANewOneStartsEmptyWithTheDefaultColourAndTheNameFocused) {
    EXPECT_EQ(sheet._name, u"");
    EXPECT_EQ(sheet._selectedColorHex, std::nullopt);
    EXPECT_TRUE(sheet._nameFocused);
    EXPECT_FALSE(sheet._hoveringSwatch);
    EXPECT_EQ(sheet.title(), u"새 컬렉션");
    EXPECT_EQ(sheet.submitTitle(), u"만들기");
}

TEST_F(CollectionEditSheetTest, AnEditStartsWithWhatTheCollectionHas) {
    const auto collection =
        std::make_shared<KovaCollection>(u"업무"_qs, 1, std::nullopt, std::optional(u"#34C759"_qs));
    const CollectionEditSheet edit(Mode::edit(collection), collect(), [] {});
    EXPECT_EQ(edit._name, u"업무");
    EXPECT_EQ(edit._selectedColorHex, u"#34C759"_qs);
    EXPECT_TRUE(edit._nameFocused);
    EXPECT_EQ(edit.title(), u"컬렉션 편집");
    EXPECT_EQ(edit.submitTitle(), u"저장");
}

TEST_F(CollectionEditSheetTest, TheNameIsSubmittedTrimmedWithTheChosenColour) {
    sheet._name = u"  code \t"_qs;
    sheet._selectedColorHex = u"#FF2D55"_qs;
    sheet.submit();
    EXPECT_THAT(submitted, ElementsAre(Submitted{u"code"_qs, u"#FF2D55"_qs}));
}

TEST_F(CollectionEditSheetTest, ANameOfOnlyBlanksCannotBeSubmitted) {
    for (const auto& blank : {u""_qs, u" "_qs, u" \t \u3000"_qs}) {
        sheet._name = blank;
        sheet.submit();
    }
    EXPECT_TRUE(submitted.empty());
}

TEST_F(CollectionEditSheetTest, ThereIsNoLimitToTheLengthOfAName) {
    sheet._name = QString(10'000, u'가');
    sheet.submit();
    EXPECT_THAT(submitted, ElementsAre(Submitted{QString(10'000, u'가'), std::nullopt}));
}

TEST_F(CollectionEditSheetTest, CancellingSubmitsNothing) {
    sheet._name = u"a"_qs;
    sheet.cancel();
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(submitted.empty());
}

TEST_F(CollectionEditSheetTest, ThePreviewHasTheTrimmedNameOrAStandIn) {
    EXPECT_EQ(sheet.previewName(), u"컬렉션");
    sheet._name = u"   "_qs;
    EXPECT_EQ(sheet.previewName(), u"컬렉션");
    sheet._name = u" 코드 조각 "_qs;
    EXPECT_EQ(sheet.previewName(), u"코드 조각");
}

TEST_F(CollectionEditSheetTest, ThePreviewHasTheColourUnderThePointerElseTheChosenOne) {
    const RGBA red{1, 0, 0, 1};
    const RGBA blue{0, 0, 1, 1};
    EXPECT_EQ(sheet.previewColor(), std::nullopt);
    sheet._selectedColorHex = u"#FF0000"_qs;
    EXPECT_EQ(sheet.previewColor(), red);
    sheet._hoveringSwatch = true;
    sheet._hoverHex = u"#0000FF"_qs;
    EXPECT_EQ(sheet.previewColor(), blue);
    sheet._hoverHex.reset();
    EXPECT_EQ(sheet.previewColor(), std::nullopt) << "the swatch without a colour is under the pointer";
    sheet._hoveringSwatch = false;
    EXPECT_EQ(sheet.previewColor(), red);
}

TEST_F(CollectionEditSheetTest, AColourThatCannotBeReadIsPreviewedAsTheAccentAndSubmittedAsItIs) {
    sheet._name = u"a"_qs;
    sheet._selectedColorHex = u"pinkish"_qs;
    EXPECT_EQ(sheet.previewColor(), std::nullopt);
    sheet.submit();
    EXPECT_THAT(submitted, ElementsAre(Submitted{u"a"_qs, u"pinkish"_qs}));
}

TEST(CollectionSwatchesTest, StandInTheirOrderBehindTheOneWithoutAColour) {
    std::vector<std::pair<QString, QString>> table;
    for (const auto& swatch : CollectionEditSheet::swatches())
        table.emplace_back(swatch.name, swatch.hex.value_or(u"none"_qs));
    EXPECT_THAT(table,
                ElementsAre(std::pair(u"기본"_qs, u"none"_qs), std::pair(u"Blue"_qs, u"#007AFF"_qs),
                            std::pair(u"Indigo"_qs, u"#5856D6"_qs), std::pair(u"Purple"_qs, u"#AF52DE"_qs),
                            std::pair(u"Pink"_qs, u"#FF2D55"_qs), std::pair(u"Red"_qs, u"#FF3B30"_qs),
                            std::pair(u"Orange"_qs, u"#FF9500"_qs), std::pair(u"Green"_qs, u"#34C759"_qs),
                            std::pair(u"Teal"_qs, u"#30B0C7"_qs)));
}

// The sheet of the shelf

class CollectionSheetTest : public ShelfFixture {
protected:
    CollectionEditSheet& present(const Mode& mode) {
        act([&] { view.presentCollectionSheet(mode); });
        return *view.collectionSheet();
    }
    void create(const QString& name, const std::optional<QString>& colorHex = {}) {
        auto& sheet = present(Mode::create());
        act([&] {
            sheet._name = name;
            sheet._selectedColorHex = colorHex;
            sheet.submit();
        });
    }
    QStringList names() const {
        QStringList names;
        for (const auto& collection : view.allCollections())
            names.append(collection->name());
        return names;
    }
    std::vector<std::int64_t> orders() const {
        std::vector<std::int64_t> orders;
        for (const auto& collection : view.allCollections())
            orders.push_back(collection->sortOrder());
        return orders;
    }
    /// As another part of the program sees it.
    std::shared_ptr<KovaCollection> saved(CollectionID id) { return m_reader.collection(id); }

private:
    ModelContext m_reader{*m_container};
};

TEST_F(CollectionSheetTest, AModeIsKnownByItsWordAndTheCollectionsIdentifier) {
    const auto a = addCollection(u"a"_qs);
    const auto b = addCollection(u"b"_qs);
    EXPECT_EQ(Mode::create().id(), u"create");
    EXPECT_EQ(Mode::edit(a).id(), u"edit-%1"_qs.arg(std::hash<CollectionID>{}(a->id())));
    EXPECT_EQ(Mode::edit(a), Mode::edit(a));
    EXPECT_NE(Mode::edit(a), Mode::edit(b));
    EXPECT_NE(Mode::edit(a), Mode::create());
}

TEST_F(CollectionSheetTest, IsPresentWhileItsModeIs) {
    EXPECT_EQ(view.collectionSheet(), nullptr);
    present(Mode::create());
    EXPECT_NE(view.collectionSheet(), nullptr);
    act([&] { view._collectionSheetMode.reset(); });
    EXPECT_EQ(view.collectionSheet(), nullptr);
}

TEST_F(CollectionSheetTest, EachChangeInItIsPainted) {
    auto& sheet = present(Mode::create());
    int renders = 0;
    view.onRender = [&] { ++renders; };
    act([&] { sheet._name = u"a"_qs; });
    act([&] { sheet._selectedColorHex = u"#34C759"_qs; });
    act([&] { sheet._hoveringSwatch = true; });
    act([&] { sheet._hoverHex = u"#34C759"_qs; });
    act([&] { sheet._nameFocused = false; });
    act([&] { sheet.cancel(); });
    EXPECT_EQ(renders, 6);
}

TEST_F(CollectionSheetTest, TheFirstCollectionHasTheOrderOneAndOpens) {
    create(u" 업무 "_qs, u"#FF9500"_qs);
    ASSERT_EQ(view.allCollections().size(), 1U);
    const auto created = view.allCollections().front();
    EXPECT_EQ(created->name(), u"업무");
    EXPECT_EQ(created->sortOrder(), 1);
    EXPECT_EQ(created->icon(), std::nullopt);
    EXPECT_EQ(created->colorHex(), u"#FF9500"_qs);
    EXPECT_FALSE(created->id().isTemporary());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::collection(created->id()));
    EXPECT_EQ(view.activeCollection(), created);
    EXPECT_FALSE(view._collectionSheetMode);
    ASSERT_NE(saved(created->id()), nullptr);
    EXPECT_EQ(saved(created->id())->colorHex(), u"#FF9500"_qs);
}

TEST_F(CollectionSheetTest, TheDefaultSwatchStoresNoColour) {
    create(u"a"_qs);
    EXPECT_EQ(saved(view.allCollections().front()->id())->colorHex(), std::nullopt);
}

TEST_F(CollectionSheetTest, AFurtherCollectionStandsBehindTheLast) {
    create(u"a"_qs);
    create(u"b"_qs);
    create(u"a"_qs);
    EXPECT_EQ(names(), (QStringList{u"a"_qs, u"b"_qs, u"a"_qs})) << "names may repeat";
    EXPECT_THAT(orders(), ElementsAre(1, 2, 3));
    EXPECT_EQ(view.activeCollection(), view.allCollections().back());
}

TEST_F(CollectionSheetTest, ACreateRightAfterADeleteTakesTheLastOrderPlusOne) {
    for (const auto& name : {u"a"_qs, u"b"_qs, u"c"_qs})
        create(name);
    act([&] { view.deleteCollection(view.allCollections()[1]); });
    create(u"d"_qs);
    EXPECT_EQ(names(), (QStringList{u"a"_qs, u"c"_qs, u"d"_qs}));
    EXPECT_THAT(orders(), ElementsAre(1, 3, 4));
}

TEST_F(CollectionSheetTest, ABlankNameLeavesTheSheetOpenAndMakesNothing) {
    create(u"  "_qs);
    EXPECT_TRUE(view.allCollections().empty());
    ASSERT_NE(view.collectionSheet(), nullptr);
    EXPECT_EQ(view.collectionSheet()->_name, u"  ");
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

TEST_F(CollectionSheetTest, AnEditChangesNameAndColourAndLeavesTheLensAlone) {
    const auto collection = addCollection(u"old"_qs);
    auto& sheet = present(Mode::edit(collection));
    act([&] {
        sheet._name = u"new "_qs;
        sheet._selectedColorHex = u"#5856D6"_qs;
        sheet.submit();
    });
    EXPECT_EQ(saved(collection->id())->name(), u"new");
    EXPECT_EQ(saved(collection->id())->colorHex(), u"#5856D6"_qs);
    EXPECT_EQ(saved(collection->id())->sortOrder(), collection->sortOrder());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_FALSE(view._collectionSheetMode);
}

TEST_F(CollectionSheetTest, AnEditOfACollectionThatWasDeletedMeanwhileOnlyCloses) {
    const auto collection = addCollection(u"a"_qs);
    auto& sheet = present(Mode::edit(collection));
    deleteElsewhere(collection->id());
    act([&] {
        sheet._name = u"b"_qs;
        sheet.submit();
    });
    EXPECT_TRUE(view.allCollections().empty());
    EXPECT_FALSE(view._collectionSheetMode);
}

TEST_F(CollectionSheetTest, CancellingChangesNothing) {
    const auto collection = addCollection(u"a"_qs);
    auto& sheet = present(Mode::edit(collection));
    act([&] {
        sheet._name = u"b"_qs;
        sheet.cancel();
    });
    EXPECT_EQ(collection->name(), u"a");
    EXPECT_EQ(view.collectionSheet(), nullptr);
}

TEST_F(CollectionSheetTest, WhatWasTypedOutlivesAHide) {
    auto& sheet = present(Mode::create());
    act([&] { sheet._name = u"half a na"_qs; });
    view.viewDisappears();
    view.viewAppears();
    view.shelfPanelDidShow();
    ASSERT_NE(view.collectionSheet(), nullptr);
    EXPECT_EQ(view.collectionSheet()->_name, u"half a na");
}

TEST_F(CollectionSheetTest, AnotherModeIsAnotherSheet) {
    const auto collection = addCollection(u"a"_qs);
    auto& sheet = present(Mode::create());
    act([&] { sheet._name = u"half"_qs; });
    EXPECT_EQ(present(Mode::edit(collection))._name, u"a");
    EXPECT_EQ(present(Mode::create())._name, u"");
}

TEST_F(CollectionSheetTest, KeysAreTheSheetsWhileItIsOpen) {
    add(u"a"_qs);
    view.viewAppears();
    panel.visible = true;
    const auto press = [&](std::uint16_t keyCode, std::uint32_t flags = 0) {
        KeyEvent key;
        key.keyCode = keyCode;
        key.modifierFlags = flags;
        return monitors.send({.kind = EventMask::keyDown, .window = panel.windowNumber(), .key = key});
    };
    ASSERT_TRUE(press(VirtualKey::downArrow));
    present(Mode::create());
    for (const auto key :
         {VirtualKey::escape, VirtualKey::returnKey, VirtualKey::space, VirtualKey::downArrow})
        EXPECT_FALSE(press(key)) << key;
    EXPECT_FALSE(press(VirtualKey::deleteKey, ModifierFlags::command));
    EXPECT_EQ(dismissals, 0);
    EXPECT_TRUE(pasted.empty());
    EXPECT_EQ(view.items().size(), 1U);
    act([&] { view.collectionSheet()->cancel(); });
    EXPECT_TRUE(press(VirtualKey::escape));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CollectionSheetTest, ACollectionThatCouldNotBeSavedStaysOpenWhenItIsSavedLater) {
    const auto item = add(u"a"_qs);
    {
        ForeignConnection other(storeFile());
        other.execute("BEGIN IMMEDIATE");
        create(u"b"_qs);
        ASSERT_NE(view.activeCollection(), nullptr);
        EXPECT_TRUE(view.activeCollection()->id().isTemporary());
    }
    act([&] { view.togglePin(*item); });
    ASSERT_NE(view.activeCollection(), nullptr);
    EXPECT_FALSE(view.activeCollection()->id().isTemporary());
    EXPECT_NE(saved(view.activeCollection()->id()), nullptr);
}

// Deleting

TEST_F(CollectionSheetTest, DeletingTheOpenCollectionOpensTheWholeHistory) {
    const auto item = add(u"kept"_qs);
    const auto collection = addCollection(u"a"_qs);
    put(item, collection);
    lens(CollectionFilter::collection(collection->id()));
    act([&] { view.deleteCollection(collection); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_TRUE(view.allCollections().empty());
    EXPECT_EQ(saved(collection->id()), nullptr);
    EXPECT_EQ(shown(), QStringList{u"kept"_qs});
    EXPECT_TRUE(item->collections()->empty());
}

TEST_F(CollectionSheetTest, DeletingAnotherCollectionLeavesTheLensAlone) {
    const auto open = addCollection(u"open"_qs);
    const auto other = addCollection(u"other"_qs);
    lens(CollectionFilter::collection(open->id()));
    act([&] { view.deleteCollection(other); });
    EXPECT_EQ(view.activeCollection(), open);
    lens(CollectionFilter::pinned());
    act([&] { view.deleteCollection(open); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
}

TEST_F(CollectionSheetTest, ADeletedCollectionCannotBeUndone) {
    act([&] { view.deleteCollection(addCollection(u"a"_qs)); });
    act([&] { view.undoLastDelete(); });
    EXPECT_TRUE(view.allCollections().empty());
}

} // namespace
} // namespace kestrova
