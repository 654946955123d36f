#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "Kestrova/look/Contrast.h"

#include <QApplication>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class PanelMenuTest : public ::testing::Test {
protected:
    ~PanelMenuTest() override { delete menu.data(); }

    PanelMenu::Entry entry(const QString& title, std::vector<QKeyCombination> keys = {}) {
        return {.title = title, .keys = std::move(keys), .action = [this, title] { chosen.append(title); }};
    }
    bool isOpen() const { return menu && menu->isVisible(); }
    QPoint centreOf(qsizetype line) const { return menu->actionGeometry(menu->actions().at(line)).center(); }

    QWidget window;
    QPointer<PanelMenu> menu =
        new PanelMenu(ShelfTheme::of(ShelfTheme::Scheme::dark), Ground::translucent, &window);
    QStringList chosen;
};

TEST_F(PanelMenuTest, AClickChoosesAndTheMenuGoes) {
    menu->add(entry(u"Paste"_s));
    menu->add(entry(u"Copy"_s));
    menu->popUp({0, 0});
    QTest::mouseClick(menu, Qt::LeftButton, {}, centreOf(1));
    EXPECT_EQ(chosen, QStringList{u"Copy"_s});
    EXPECT_FALSE(isOpen());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(menu.isNull());
}

TEST_F(PanelMenuTest, TheMenuHasGoneFromTheScreenWhenTheActionRuns) {
    bool wasOpen = true;
    menu->add({.title = u"Paste"_s, .action = [&] { wasOpen = isOpen(); }});
    menu->popUp({0, 0});
    QTest::mouseClick(menu, Qt::LeftButton, {}, centreOf(0));
    EXPECT_FALSE(wasOpen);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PanelMenuTest, ADisabledLineDoesNothing) {
    auto line = entry(u"Nothing here"_s, {Qt::Key_Delete});
    line.isEnabled = false;
    menu->add(line);
    menu->popUp({0, 0});
    QTest::mouseClick(menu, Qt::LeftButton, {}, centreOf(0));
    QTest::keyClick(menu, Qt::Key_Delete);
    EXPECT_EQ(chosen, QStringList());
    EXPECT_TRUE(isOpen());
}

TEST_F(PanelMenuTest, EscapeClosesItWithoutAChoice) {
    menu->add(entry(u"Paste"_s));
    menu->popUp({0, 0});
    QTest::keyClick(menu, Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(chosen, QStringList());
}

struct Press {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    QString chosen;
};

class PanelMenuKeyTest : public PanelMenuTest, public ::testing::WithParamInterface<Press> {};

TEST_P(PanelMenuKeyTest, TheKeysOfAnEntryChooseIt) {
    menu->add(entry(u"Paste"_s, {Qt::Key_Return, Qt::Key_Enter}));
    menu->add(entry(u"Copy"_s, {Qt::CTRL | Qt::Key_C}));
    menu->addDivider();
    menu->add(entry(u"Preview"_s, {Qt::Key_Space}));
    menu->add(entry(u"Delete"_s, {Qt::Key_Delete, Qt::Key_Backspace}));
    menu->popUp({0, 0});
    QTest::keyClick(menu, GetParam().key, GetParam().modifiers);
    EXPECT_EQ(chosen.join(u' '), GetParam().chosen);
    EXPECT_EQ(isOpen(), GetParam().chosen.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Keys, PanelMenuKeyTest,
                         ::testing::Values(Press{Qt::Key_Return, Qt::NoModifier, u"Paste"_s},
                                           Press{Qt::Key_Enter, Qt::KeypadModifier, u"Paste"_s},
                                           Press{Qt::Key_C, Qt::ControlModifier, u"Copy"_s},
                                           Press{Qt::Key_C, Qt::MetaModifier, u"Copy"_s},
                                           Press{Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier, u""_s},
                                           Press{Qt::Key_Space, Qt::NoModifier, u"Preview"_s},
                                           Press{Qt::Key_Delete, Qt::NoModifier, u"Delete"_s},
                                           Press{Qt::Key_Backspace, Qt::NoModifier, u"Delete"_s},
                                           Press{Qt::Key_Delete, Qt::ControlModifier, u""_s}));

TEST_F(PanelMenuTest, ReturnActivatesTheHighlightedLine) {
    menu->add(entry(u"Paste"_s, {Qt::Key_Return}));
    menu->add(entry(u"Copy"_s));
    menu->popUp({0, 0});
    menu->setActiveAction(menu->actions().at(1));
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(chosen, QStringList{u"Copy"_s});
}

TEST_F(PanelMenuTest, SpaceChoosesItsEntryWhicheverLineIsHighlighted) {
    menu->add(entry(u"Paste"_s));
    menu->add(entry(u"Preview"_s, {Qt::Key_Space}));
    menu->popUpForKeyboard({0, 0});
    EXPECT_EQ(menu->activeAction(), menu->actions().at(0));
    QTest::keyClick(menu, Qt::Key_Space);
    EXPECT_EQ(chosen, QStringList{u"Preview"_s});
}

TEST_F(PanelMenuTest, InASubmenuCommandKeysAreThoseOfTheMenuAndPlainOnesItsOwn) {
    menu->add(entry(u"Copy"_s, {Qt::CTRL | Qt::Key_C}));
    menu->add(entry(u"Delete"_s, {Qt::Key_Delete}));
    auto& submenu = menu->addSubmenu({.title = u"Collection"_s});
    submenu.add(entry(u"Work"_s));
    menu->popUp({0, 0});
    submenu.popUp({100, 0});
    QTest::keyClick(&submenu, Qt::Key_Delete);
    EXPECT_EQ(chosen, QStringList());
    QTest::keyClick(&submenu, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(chosen, QStringList{u"Copy"_s});
    EXPECT_FALSE(isOpen());
}

TEST_F(PanelMenuTest, AnAmpersandInATitleIsALetter) {
    menu->add(entry(u"Work & more"_s));
    EXPECT_EQ(menu->actions().front()->text(), u"Work && more");
}

TEST_F(PanelMenuTest, ALongTitleDoesNotMakeTheMenuEndless) {
    menu->add(entry(QString(2000, u'w')));
    menu->popUp({0, 0});
    EXPECT_LT(menu->width(), 500);
}

struct Look {
    ShelfTheme::Scheme scheme;
    Ground ground;
};

class PanelMenuLookTest : public ::testing::TestWithParam<Look> {};

TEST_P(PanelMenuLookTest, EveryTextHasEnoughContrastOnEveryGroundAndOnlyABlendedMenuIsRound) {
    const auto theme = ShelfTheme::of(GetParam().scheme);
    PanelMenu menu(theme, GetParam().ground, nullptr);
    menu.setAttribute(Qt::WA_DeleteOnClose, false);
    menu.add({.title = u"MMMM"_s, .shortcut = u"MMMM"_s});
    menu.add({.title = u"MMMM"_s, .isEnabled = false});
    menu.add({.title = u"MMMM"_s, .isDestructive = true});
    menu.popUp({0, 0});
    // Within a line: beside its texts there is nothing but its ground.
    const auto contrastIn = [&](const QImage& line, int from, int to) {
        const auto ground = line.pixelColor(line.width() / 2, line.height() / 2);
        double best = 1;
        for (int x = from; x < to; ++x)
            for (int y = line.height() / 2 - 3; y < line.height() / 2 + 3; ++y)
                best = std::max(best, contrast(line.pixelColor(x, y), ground));
        return best;
    };
    const auto all = menu.actions();
    for (auto* const line : all) {
        for (const bool isHighlighted : {false, true}) {
            menu.setActiveAction(isHighlighted && line->isEnabled() ? line : nullptr);
            const auto picture = menu.grab(menu.actionGeometry(line)).toImage();
            EXPECT_GE(contrastIn(picture, 12, 36), 4.5) << all.indexOf(line) << isHighlighted;
            if (line == all.front()) {
                EXPECT_GE(contrastIn(picture, picture.width() - 36, picture.width() - 12), 4.5)
                    << isHighlighted;
            }
        }
    }
    QImage picture(menu.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    menu.render(&picture, {}, {}, QWidget::DrawWindowBackground);
    EXPECT_EQ(picture.pixelColor(0, 0).alpha() == 255, GetParam().ground == Ground::opaque);
    EXPECT_EQ(picture.pixelColor(picture.rect().center()).alpha(), 255);
}

INSTANTIATE_TEST_SUITE_P(Looks, PanelMenuLookTest,
                         ::testing::Values(Look{ShelfTheme::Scheme::dark, Ground::translucent},
                                           Look{ShelfTheme::Scheme::dark, Ground::opaque},
                                           Look{ShelfTheme::Scheme::light, Ground::translucent},
                                           Look{ShelfTheme::Scheme::light, Ground::opaque}));

} // namespace
} // namespace kestrova
