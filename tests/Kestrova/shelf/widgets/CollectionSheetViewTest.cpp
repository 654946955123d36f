#include "Kestrova/shelf/widgets/CollectionSheetView.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "Kestrova/shelf/widgets/CollectionPreview.h"
#include "Kestrova/shelf/widgets/CollectionSheetCard.h"
#include "Kestrova/shelf/widgets/NameField.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/SwatchRow.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QAccessible>
#include <QInputMethodEvent>
#include <QLabel>

namespace kestrova {
namespace {

using Mode = CollectionEditSheet::Mode;

class CollectionSheetViewTest : public WidgetFixture {
protected:
    void present(const Mode& mode = Mode::create()) {
        view.perform([&] { view.presentCollectionSheet(mode); });
        // The card of a sheet before it must not be found.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    std::shared_ptr<KovaCollection> addCollection(const QString& name,
                                                  const std::optional<QString>& colorHex) {
        const auto collection = std::make_shared<KovaCollection>(name, 1, std::nullopt, colorHex);
        ModelContext elsewhere(*m_container);
        elsewhere.insert(collection);
        EXPECT_TRUE(elsewhere.save());
        return view.allCollections().back();
    }
    CollectionEditSheet& sheet() { return *view.collectionSheet(); }
    CollectionSheetCard& card() { return part<CollectionSheetCard>(); }
    NameField& name() { return part<NameField>(); }
    ColorSwatch& swatch(std::size_t position) { return *part<SwatchRow>().swatches()[position]; }
    SheetButton& button(const QString& title) {
        for (auto* const child : card().findChildren<QPushButton*>())
            if (child->text() == title)
                return dynamic_cast<SheetButton&>(*child);
        qFatal("The sheet has no such button.");
    }
    /// Where the keyboard is, as a person would type.
    void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void compose(const QString& preedit) {
        QInputMethodEvent event(preedit, {});
        QCoreApplication::sendEvent(&name(), &event);
    }
    /// The keyboard goes to another window, as it does when the shelf gives it back.
    void hideBehindAnotherWindow() {
        panel.orderOut();
        m_other.show();
        m_other.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_other));
    }
    /// The card goes with a transition.
    bool isGone() {
        return waitFor([&] { return !part<CollectionSheetView>().isVisible(); });
    }

private:
    QWidget m_other;
};

TEST_F(CollectionSheetViewTest, OpensOverTheWholeShelfWithTheKeyboardInTheName) {
    show();
    EXPECT_FALSE(part<CollectionSheetView>().isVisible());
    present();
    EXPECT_TRUE(part<CollectionSheetView>().isVisible());
    EXPECT_EQ(part<CollectionSheetView>().size(), part<ShelfContent>().size());
    EXPECT_EQ(card().width(), 360);
    EXPECT_TRUE(name().hasFocus());
    EXPECT_EQ(name().placeholderText(), u"예: 자주 쓰는 코드");
    type(u"ab"_qs);
    EXPECT_EQ(sheet()._name, u"ab");
    EXPECT_EQ(view._query, u"");
}

TEST_F(CollectionSheetViewTest, AnEditShowsWhatTheCollectionHasReadyToBeTypedOver) {
    const auto collection = addCollection(u"업무"_qs, u"#FF9500"_qs);
    show();
    present(Mode::edit(collection));
    EXPECT_EQ(name().text(), u"업무");
    EXPECT_EQ(name().selectedText(), u"업무");
    EXPECT_TRUE(swatch(6).isChecked());
    EXPECT_FALSE(swatch(0).isChecked());
    type(u"job"_qs);
    press(Qt::Key_Return);
    EXPECT_EQ(collection->name(), u"job");
    EXPECT_EQ(collection->colorHex(), u"#FF9500"_qs);
    EXPECT_TRUE(isGone());
}

TEST_F(CollectionSheetViewTest, ReturnInTheFieldSubmitsAndOpensTheNewCollection) {
    show();
    present();
    type(u"code"_qs);
    press(Qt::Key_Return);
    EXPECT_EQ(view.collectionSheet(), nullptr);
    ASSERT_EQ(view.allCollections().size(), 1U);
    EXPECT_EQ(view.activeCollection()->name(), u"code");
    EXPECT_EQ(dismissals, 0);
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(CollectionSheetViewTest, ReturnWithABlankNameDoesNothingAndTheSheetStays) {
    show();
    present();
    type(u"  "_qs);
    press(Qt::Key_Return);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_TRUE(button(u"만들기"_qs).isEnabled());
    QTest::mouseClick(&button(u"만들기"_qs), Qt::LeftButton);
    EXPECT_NE(view.collectionSheet(), nullptr);
    EXPECT_TRUE(view.allCollections().empty());
    EXPECT_TRUE(part<CollectionSheetView>().isVisible());
}

TEST_F(CollectionSheetViewTest, AReturnThatIsHeldDownSubmitsNothing) {
    show();
    present(Mode::edit(addCollection(u"a"_qs, {})));
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_qs, true);
    QCoreApplication::sendEvent(&name(), &repeated);
    EXPECT_NE(view.collectionSheet(), nullptr);
}

TEST_F(CollectionSheetViewTest, EscapeCancelsTheSheetAndNotTheShelf) {
    show();
    for (const int tabs : {0, 1, 2, 3}) {
        present();
        type(u"x"_qs);
        for (int i = 0; i < tabs; ++i)
            press(Qt::Key_Tab);
        press(Qt::Key_Escape);
        EXPECT_EQ(view.collectionSheet(), nullptr);
        EXPECT_TRUE(isGone());
    }
    EXPECT_EQ(dismissals, 0);
    EXPECT_TRUE(view.allCollections().empty());
}

TEST_F(CollectionSheetViewTest, TheKeyboardGoesBackWhereItWas) {
    show();
    present();
    press(Qt::Key_Escape);
    EXPECT_TRUE(field().hasFocus());
    view.perform([&] { view.itemTapped(); });
    present();
    EXPECT_TRUE(name().hasFocus());
    press(Qt::Key_Escape);
    EXPECT_FALSE(field().hasFocus());
    EXPECT_EQ(view._lane, KeyboardLane::list);
}

TEST_F(CollectionSheetViewTest, TheButtonsSubmitAndCancel) {
    show();
    present();
    type(u"a"_qs);
    QTest::mouseClick(&button(u"취소"_qs), Qt::LeftButton);
    EXPECT_EQ(view.collectionSheet(), nullptr);
    EXPECT_TRUE(isGone());
    present();
    type(u"b"_qs);
    QTest::mouseClick(&button(u"만들기"_qs), Qt::LeftButton);
    ASSERT_EQ(view.allCollections().size(), 1U);
    EXPECT_EQ(view.allCollections().front()->name(), u"b");
}

TEST_F(CollectionSheetViewTest, TabWalksFieldSwatchesAndButtonsAndNothingBelow) {
    show();
    present();
    const std::vector<QWidget*> round{&swatch(0), &button(u"취소"_qs), &button(u"만들기"_qs), &name()};
    for (auto* const stop : round) {
        press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), stop);
    }
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(button(u"만들기"_qs).hasFocus());
}

TEST_F(CollectionSheetViewTest, ArrowsWalkTheSwatchesAndTheSpaceBarChooses) {
    show();
    present();
    press(Qt::Key_Tab);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_TRUE(swatch(2).hasFocus());
    EXPECT_EQ(sheet()._selectedColorHex, std::nullopt);
    press(Qt::Key_Space);
    EXPECT_EQ(sheet()._selectedColorHex, u"#5856D6"_qs);
    EXPECT_TRUE(swatch(2).isChecked());
    EXPECT_FALSE(swatch(0).isChecked());
    press(Qt::Key_Space);
    EXPECT_EQ(sheet()._selectedColorHex, u"#5856D6"_qs) << "choosing again is no undoing";
    EXPECT_TRUE(swatch(2).isChecked());
    press(Qt::Key_Home);
    EXPECT_TRUE(swatch(0).hasFocus());
    press(Qt::Key_Left);
    EXPECT_TRUE(swatch(8).hasFocus());
    press(Qt::Key_Right);
    press(Qt::Key_End);
    EXPECT_TRUE(swatch(8).hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(button(u"취소"_qs).hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(swatch(8).hasFocus()) << "Tab comes back to the swatch that it left";
}

TEST_F(CollectionSheetViewTest, ReturnOnASwatchSubmitsAndOnCancelCancels) {
    show();
    present();
    type(u"a"_qs);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    ASSERT_EQ(view.allCollections().size(), 1U);
    ASSERT_TRUE(isGone());
    present();
    type(u"b"_qs);
    button(u"취소"_qs).setFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    EXPECT_EQ(view.collectionSheet(), nullptr);
    EXPECT_EQ(view.allCollections().size(), 1U);
}

TEST_F(CollectionSheetViewTest, AClickOnASwatchChoosesIt) {
    show();
    present();
    QTest::mouseClick(&swatch(4), Qt::LeftButton);
    EXPECT_EQ(sheet()._selectedColorHex, u"#FF2D55"_qs);
    QTest::mouseClick(&swatch(0), Qt::LeftButton);
    EXPECT_EQ(sheet()._selectedColorHex, std::nullopt);
    EXPECT_TRUE(swatch(0).isChecked());
}

TEST_F(CollectionSheetViewTest, ThePointerOnASwatchPreviewsIt) {
    show();
    present();
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&swatch(7), &enter);
    EXPECT_TRUE(sheet()._hoveringSwatch);
    EXPECT_EQ(sheet()._hoverHex, u"#34C759"_qs);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&swatch(7), &leave);
    EXPECT_FALSE(sheet()._hoveringSwatch);
    EXPECT_EQ(sheet()._hoverHex, std::nullopt);
    QCoreApplication::sendEvent(&swatch(0), &enter);
    EXPECT_TRUE(sheet()._hoveringSwatch);
    EXPECT_EQ(sheet()._hoverHex, std::nullopt);
    panel.orderOut();
    EXPECT_FALSE(sheet()._hoveringSwatch) << "the pointer is on no swatch of a hidden shelf";
}

TEST_F(CollectionSheetViewTest, WhatIsBeingComposedIsPartOfTheName) {
    show();
    present();
    compose(u"ㅎ"_qs);
    compose(u"한"_qs);
    EXPECT_EQ(sheet()._name, u"한");
    EXPECT_EQ(name().composedText(), u"한");
    QTest::mouseClick(&button(u"만들기"_qs), Qt::LeftButton);
    ASSERT_EQ(view.allCollections().size(), 1U);
    EXPECT_EQ(view.allCollections().front()->name(), u"한");
    EXPECT_EQ(view._query, u"");
}

TEST_F(CollectionSheetViewTest, AHiddenShelfComesBackWithItsSheet) {
    show();
    present();
    type(u"half a na"_qs);
    press(Qt::Key_Tab);
    hideBehindAnotherWindow();
    show();
    EXPECT_TRUE(part<CollectionSheetView>().isVisible());
    EXPECT_EQ(name().text(), u"half a na");
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_TRUE(card().isAncestorOf(QApplication::focusWidget()));
    EXPECT_FALSE(field().hasFocus());
}

TEST_F(CollectionSheetViewTest, ASheetThatIsOpenedWhileTheShelfIsHiddenIsThereAtOnce) {
    show();
    hideBehindAnotherWindow();
    present();
    show();
    EXPECT_TRUE(card().isVisible());
    EXPECT_TRUE(name().hasFocus());
}

TEST_F(CollectionSheetViewTest, AClickBesideTheCardKeepsTheSheetAndDoesNotReachTheShelf) {
    add(u"a"_qs);
    show();
    present();
    type(u"x"_qs);
    auto& overlay = part<CollectionSheetView>();
    auto& shelf = part<ShelfContent>();
    const auto row = list().viewport()->mapTo(&shelf, centreOfRow(0));
    ASSERT_FALSE(card().geometry().contains(row));
    EXPECT_EQ(shelf.childAt(row), &overlay);
    const auto lane = view._lane;
    QTest::mouseClick(&overlay, Qt::LeftButton, {}, row);
    EXPECT_EQ(view._lane, lane);
    EXPECT_EQ(sheet()._name, u"x");
    EXPECT_TRUE(name().hasFocus());
}

TEST_F(CollectionSheetViewTest, WhileItFadesTheShelfIsThereAgain) {
    show();
    present();
    press(Qt::Key_Escape);
    EXPECT_TRUE(part<CollectionSheetView>().testAttribute(Qt::WA_TransparentForMouseEvents));
    type(u"q"_qs);
    EXPECT_EQ(view._query, u"q");
    EXPECT_TRUE(isGone());
}

TEST_F(CollectionSheetViewTest, OpensAgainWhileTheLastOneFades) {
    show();
    present();
    type(u"first"_qs);
    press(Qt::Key_Escape);
    present();
    EXPECT_TRUE(name().hasFocus());
    EXPECT_EQ(name().text(), u"");
    EXPECT_FALSE(part<CollectionSheetView>().testAttribute(Qt::WA_TransparentForMouseEvents));
    type(u"second"_qs);
    EXPECT_EQ(sheet()._name, u"second");
}

TEST_F(CollectionSheetViewTest, EverythingHasANameAndTheChosenSwatchSaysSo) {
    show();
    present();
    const auto nameOf = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    };
    EXPECT_EQ(nameOf(card()), u"새 컬렉션");
    EXPECT_EQ(nameOf(name()), u"이름");
    EXPECT_EQ(nameOf(button(u"취소"_qs)), u"취소");
    EXPECT_EQ(nameOf(button(u"만들기"_qs)), u"만들기");
    const auto& swatches = CollectionEditSheet::swatches();
    for (std::size_t i = 0; i < swatches.size(); ++i) {
        auto* const accessible = QAccessible::queryAccessibleInterface(&swatch(i));
        EXPECT_EQ(accessible->text(QAccessible::Name), swatches[i].name);
        EXPECT_EQ(swatch(i).toolTip(), swatches[i].name);
        EXPECT_EQ(accessible->role(), QAccessible::RadioButton);
        EXPECT_EQ(accessible->state().checked, i == 0);
    }
    auto* const card = QAccessible::queryAccessibleInterface(&this->card());
    EXPECT_EQ(card->role(), QAccessible::Dialog);
}

TEST_F(CollectionSheetViewTest, TheChosenSwatchHasARingAroundIt) {
    show();
    present();
    const auto ringOf = [](ColorSwatch& swatch) {
        const auto image = swatch.grab().toImage();
        const QPoint onRing(image.width() / 2, image.height() / 2 - 15);
        return image.pixelColor(onRing);
    };
    const auto without = ringOf(swatch(3));
    view.perform([&] { sheet()._selectedColorHex = u"#AF52DE"_qs; });
    EXPECT_NE(ringOf(swatch(3)), without);
}

TEST_F(CollectionSheetViewTest, GrowsWithTheFontOfTheDesktop) {
    show();
    present();
    const int before = card().height();
    const auto ordinary = QApplication::font();
    auto large = ordinary;
    large.setPointSizeF(2 * ordinary.pointSizeF());
    QApplication::setFont(large);
    EXPECT_TRUE(waitFor([&] { return card().height() > before; }));
    EXPECT_EQ(card().width(), 360);
    EXPECT_LT(card().height(), part<ShelfContent>().height());
    for (auto* const child : card().findChildren<QPushButton*>()) {
        EXPECT_GE(child->width(), child->sizeHint().width());
        EXPECT_TRUE(card().rect().contains(child->geometry()));
    }
    QApplication::setFont(ordinary);
    EXPECT_TRUE(waitFor([&] { return card().height() == before; }));
}

TEST_F(CollectionSheetViewTest, AColourThatIsClickedLeavesTheKeyboardInTheName) {
    show();
    present();
    QTest::mouseClick(&swatch(2), Qt::LeftButton);
    EXPECT_EQ(sheet()._selectedColorHex, swatch(2).hex());
    EXPECT_TRUE(name().hasFocus());
    type(u"work"_qs);
    EXPECT_EQ(sheet()._name, u"work");
}

TEST_F(CollectionSheetViewTest, AnEditIsTitledAsOneAndItsButtonsAreNeverDisabled) {
    show();
    present(Mode::edit(addCollection(u"a"_qs, {})));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&card())->text(QAccessible::Name), u"컬렉션 편집");
    EXPECT_TRUE(name().hasFocus());
    for (const auto& typed : {u" "_qs, u"   "_qs}) {
        name().selectAll();
        type(typed);
        EXPECT_TRUE(button(u"저장"_qs).isEnabled());
        EXPECT_TRUE(button(u"취소"_qs).isEnabled());
        QTest::mouseClick(&button(u"저장"_qs), Qt::LeftButton);
        ASSERT_NE(view.collectionSheet(), nullptr);
    }
    EXPECT_EQ(view.allCollections().front()->name(), u"a");
}

TEST_F(CollectionSheetViewTest, TheTitleStandsOutFromTheLabels) {
    show();
    present();
    const auto label = [this](const QString& text) {
        for (auto* const child : card().findChildren<QLabel*>())
            if (child->text() == text)
                return child;
        qFatal("The sheet has no such label.");
    };
    EXPECT_EQ(label(u"새 컬렉션"_qs)->font().weight(), QFont::DemiBold);
    EXPECT_LT(label(u"이름"_qs)->font().weight(), QFont::DemiBold);
    EXPECT_LT(label(u"색"_qs)->font().weight(), QFont::DemiBold);
}

TEST_F(CollectionSheetViewTest, AColourThatIsNoSwatchHasNoneChosenAndIsKept) {
    const auto collection = addCollection(u"a"_qs, u"#123456"_qs);
    show();
    present(Mode::edit(collection));
    for (std::size_t i = 0; i < CollectionEditSheet::swatches().size(); ++i)
        EXPECT_FALSE(swatch(i).isChecked()) << i;
    press(Qt::Key_Return);
    EXPECT_EQ(collection->colorHex(), u"#123456"_qs);
}

TEST_F(CollectionSheetViewTest, ThePreviewIsDrawnInTheColourUnderThePointerElseInTheChosenOne) {
    show();
    present();
    const auto drawn = [this] { return part<CollectionPreview>().grab().toImage(); };
    const auto choose = [this](const std::optional<QString>& hex) {
        view.perform([&] { sheet()._selectedColorHex = hex; });
    };
    const auto accent = drawn();
    choose(u"pinkish"_qs);
    EXPECT_EQ(drawn(), accent);
    choose(u"#34C759"_qs);
    const auto green = drawn();
    EXPECT_NE(green, accent);
    choose(u"#FF3B30"_qs);
    const auto red = drawn();
    EXPECT_NE(red, green);
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&swatch(7), &enter);
    EXPECT_EQ(drawn(), green);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&swatch(7), &leave);
    EXPECT_EQ(drawn(), red);
    QCoreApplication::sendEvent(&swatch(0), &enter);
    EXPECT_EQ(drawn(), accent);
}

class CollectionSwatchTest : public CollectionSheetViewTest,
                             public testing::WithParamInterface<std::size_t> {};

TEST_P(CollectionSwatchTest, ANewCollectionGetsTheColourThatIsClicked) {
    const auto& expected = CollectionEditSheet::swatches().at(GetParam());
    show();
    present();
    QTest::mouseClick(&swatch(GetParam()), Qt::LeftButton);
    EXPECT_TRUE(swatch(GetParam()).isChecked());
    type(u"a"_qs);
    press(Qt::Key_Return);
    ASSERT_EQ(view.allCollections().size(), 1U);
    EXPECT_EQ(view.allCollections().front()->colorHex(), expected.hex);
}

INSTANTIATE_TEST_SUITE_P(Swatches, CollectionSwatchTest, testing::Range(std::size_t{0}, std::size_t{9}),
                         [](const auto& test) {
                             const auto& hex = CollectionEditSheet::swatches().at(test.param).hex;
                             return hex ? CollectionEditSheet::swatches().at(test.param).name.toStdString()
                                        : std::string("None");
                         });

} // namespace
} // namespace kestrova
