#include "Kestrova/StatusItem.h"

#include "tests/support/FakeSystemTray.h"
#include "tests/support/ManualMainQueue.h"

#include <QAction>
#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr StatusMenuCapabilities onlySettings{.settings = true};

class StatusItemTest : public testing::Test {
protected:
    StatusItemTest() {
        item.onAction = [this](StatusMenuAction action) { chosen.push_back(action); };
        item.onMenuNeedsUpdate = [this](StatusMenu& menu) { menuNeedsUpdate(menu, launchesAtLogin); };
        item.symbolImage = [this](const QString& symbol) {
            drawn.append(symbol);
            QPixmap picture(16, 16);
            picture.fill(Qt::black);
            return QIcon(picture);
        };
    }
    ~StatusItemTest() override {
        if (item.menu())
            item.menu()->close();
    }
    QAction* action(int line) { return item.menu()->actions().value(line); }
    void open() { item.menu()->popup({}); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(item.menu(), &event);
    }
    /// The strongest opacity anywhere in the icon as it stands.
    double iconOpacity() {
        const QImage image = item.icon()->icon().pixmap(32, 32).toImage();
        int strongest = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                strongest = std::max(strongest, qAlpha(image.pixel(x, y)));
        return strongest / 255.0;
    }

    ManualMainQueue queue;
    FakeSystemTray tray;
    StatusItem item{queue, tray, statusMenu(onlySettings)};
    bool launchesAtLogin = false;
    std::vector<StatusMenuAction> chosen;
    QStringList drawn;
};

TEST_F(StatusItemTest, NothingIsMadeBeforeThereIsATray) {
    queue.advance(1s);
    EXPECT_TRUE(tray.isAwaited);
    EXPECT_EQ(item.icon(), nullptr);
    EXPECT_EQ(item.menu(), nullptr);
    item.pulse();
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(StatusItemTest, TheStartOfTheProgramIsNotHeldUp) {
    EXPECT_FALSE(tray.isAwaited);
    queue.turn();
    EXPECT_FALSE(tray.isAwaited);
    queue.advance(300ms);
    EXPECT_TRUE(tray.isAwaited);
}

TEST_F(StatusItemTest, AnItemThatGoesBeforeThatAwaitsNoTray) {
    FakeSystemTray other;
    { const StatusItem brief(queue, other, {}); }
    queue.advance(1s);
    EXPECT_FALSE(other.isAwaited);
    other.appear();
}

TEST_F(StatusItemTest, TheIconComesWithTheTray) {
    tray.appear();
    ASSERT_NE(item.icon(), nullptr);
    EXPECT_TRUE(item.icon()->isVisible());
    EXPECT_EQ(item.icon()->toolTip(), u"Kestrova");
    EXPECT_EQ(item.icon()->contextMenu(), item.menu());
    const auto* const before = item.icon();
    tray.appear();
    EXPECT_EQ(item.icon(), before);
}

TEST_F(StatusItemTest, ThePictureIsThereInEverySizeAndReadsOnLightAndDark) {
    tray.appear();
    for (const int size : {16, 22, 24, 32, 48}) {
        const QPixmap picture = item.icon()->icon().pixmap(size, size);
        EXPECT_EQ(picture.size(), QSize(size, size));
        for (const auto ground : {Qt::white, Qt::black}) {
            QImage panel(picture.size(), QImage::Format_RGB32);
            panel.fill(ground);
            QPainter(&panel).drawPixmap(0, 0, picture);
            int farthest = 0;
            for (int y = 0; y < size; ++y)
                for (int x = 0; x < size; ++x)
                    farthest =
                        std::max(farthest, std::abs(qGray(panel.pixel(x, y)) - qGray(QColor(ground).rgb())));
            EXPECT_GT(farthest, 180) << size;
        }
    }
}

TEST_F(StatusItemTest, TheMenuShowsWhatItsTableSays) {
    tray.appear();
    const auto table = statusMenu(onlySettings);
    const auto actions = item.menu()->actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(table.size()));
    for (int line = 0; line < actions.size(); ++line) {
        const auto& entry = table[static_cast<std::size_t>(line)];
        EXPECT_EQ(actions[line]->isSeparator(), entry.isSeparator()) << line;
        if (entry.isSeparator())
            continue;
        EXPECT_EQ(actions[line]->text(), entry.title) << line;
        EXPECT_EQ(actions[line]->isEnabled(), entry.isEnabled) << line;
        EXPECT_FALSE(actions[line]->isCheckable()) << line;
    }
}

TEST_F(StatusItemTest, TwoEntriesShowTheirKeys) {
    tray.appear();
    for (int line = 0; line < item.menu()->actions().size(); ++line) {
        const QString shown = action(line)->shortcut().toString(QKeySequence::PortableText);
        EXPECT_EQ(shown, line == 10 ? u"Ctrl+," : line == 12 ? u"Ctrl+Q" : u"") << line;
    }
    EXPECT_TRUE(action(10)->isShortcutVisibleInContextMenu());
}

TEST_F(StatusItemTest, ChoosingAnEntryCallsItsAction) {
    tray.appear();
    for (auto* const entry : item.menu()->actions())
        entry->trigger();
    using enum StatusMenuAction;
    EXPECT_THAT(chosen, ElementsAre(togglePanel, captureArea, captureFullScreen, captureWindow, openSettings,
                                    terminate));
}

TEST_F(StatusItemTest, AKeyEquivalentChoosesItsEntryAndClosesTheMenu) {
    tray.appear();
    for (const auto modifier : {Qt::ControlModifier, Qt::MetaModifier}) {
        open();
        press(Qt::Key_Q, modifier);
        EXPECT_FALSE(item.menu()->isVisible());
    }
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    using enum StatusMenuAction;
    EXPECT_THAT(chosen, ElementsAre(terminate, terminate, openSettings));
}

TEST_F(StatusItemTest, OtherKeysChooseNothing) {
    tray.appear();
    open();
    press(Qt::Key_Q, Qt::NoModifier);
    press(Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_TRUE(item.menu()->isVisible());
}

TEST_F(StatusItemTest, AKeyEquivalentOfADisabledEntryDoesNothing) {
    StatusItemMenu menu(statusMenu({}));
    menu.onAction = [this](StatusMenuAction action) { chosen.push_back(action); };
    menu.popup({});
    QKeyEvent comma(QEvent::KeyPress, Qt::Key_Comma, Qt::ControlModifier);
    QCoreApplication::sendEvent(&menu, &comma);
    EXPECT_THAT(chosen, IsEmpty());
    menu.close();
}

TEST_F(StatusItemTest, EachOpeningShowsTheStateOfThatMoment) {
    tray.appear();
    EXPECT_TRUE(action(9)->icon().isNull());
    EXPECT_THAT(drawn, IsEmpty());
    open();
    EXPECT_THAT(drawn, ElementsAre(QStringLiteral("square")));
    EXPECT_FALSE(action(9)->icon().isNull());
    EXPECT_TRUE(action(9)->isIconVisibleInMenu());
    EXPECT_EQ(action(9)->toolTip(), u"끔");
    item.menu()->close();
    launchesAtLogin = true;
    open();
    EXPECT_EQ(drawn.last(), u"checkmark.square.fill");
    EXPECT_EQ(action(9)->toolTip(), u"켬");
}

TEST_F(StatusItemTest, ActivatingTheIconOpensTheMenuAndClosesItAgain) {
    tray.appear();
    Q_EMIT item.icon()->activated(QSystemTrayIcon::Context);
    Q_EMIT item.icon()->activated(QSystemTrayIcon::MiddleClick);
    Q_EMIT item.icon()->activated(QSystemTrayIcon::DoubleClick);
    EXPECT_FALSE(item.menu()->isVisible());
    Q_EMIT item.icon()->activated(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(item.menu()->isVisible());
    Q_EMIT item.icon()->activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(item.menu()->isVisible());
}

TEST_F(StatusItemTest, APulseFadesTheIconAndBringsItBack) {
    tray.appear();
    const double full = iconOpacity();
    EXPECT_GT(full, 0.95);
    item.pulse();
    queue.advance(120ms);
    EXPECT_NEAR(iconOpacity(), 0.4 * full, 0.02);
    queue.advance(160ms);
    EXPECT_GT(iconOpacity(), 0.45 * full);
    EXPECT_LT(iconOpacity(), 0.95 * full);
    queue.advance(120ms);
    EXPECT_DOUBLE_EQ(iconOpacity(), full);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(StatusItemTest, APulseDuringAPulseStartsAnew) {
    tray.appear();
    const double full = iconOpacity();
    item.pulse();
    queue.advance(320ms);
    item.pulse();
    queue.advance(120ms);
    EXPECT_NEAR(iconOpacity(), 0.4 * full, 0.02);
    queue.advance(280ms);
    EXPECT_DOUBLE_EQ(iconOpacity(), full);
    EXPECT_TRUE(queue.isEmpty());
}

} // namespace
} // namespace kestrova
