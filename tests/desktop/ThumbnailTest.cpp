#include "tests/desktop/Keys.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <cstdlib>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Previews of captures of a display of 1280 x 800 without panels.
class ThumbnailTest : public ShelfTest {
protected:
    // The machine may have nothing to play sounds on, and the log tells that.
    ThumbnailTest() { program.editDefault(u"captureSoundEnabled"_s, false); }

    void capture(int number) {
        ASSERT_EQ(program.command({u"capture"_s, u"screen"_s}).exitStatus, 0);
        ASSERT_TRUE(program.waitForRows(number));
    }
    /// The lowest one is number 0.
    static QRect tile(int number) {
        return {1280 - 16 - 8 - 240, 800 - 16 - 8 - 180 - number * 188, 240, 180};
    }
    /// The picture of a display of this shape leaves a strip of the dark plate free.
    bool isUp(int number) const {
        const auto color = windows.colorAt({tile(number).center().x(), tile(number).top() + 7});
        return std::abs(color.red() - 31) <= 1 && std::abs(color.blue() - 36) <= 1;
    }
    bool areUp(int count) const {
        for (int number = 0; number < 5; ++number)
            if (isUp(number) != (number < count))
                return false;
        return true;
    }
    bool waitForUp(int count) {
        return eventually([&] { return areUp(count); });
    }
    static QPoint closeButton(int number) { return tile(number).topRight() + QPoint(-17, 17); }
    static QPoint editButton(int number) { return closeButton(number) - QPoint(28, 0); }
    static QStringList filesIn(const QString& folder) {
        return QDir(folder).entryList(QDir::Files, QDir::Name);
    }

    Mouse mouse{session.display()};
    ScreenPicture screen{session.display()};
};

TEST_F(ThumbnailTest, CapturesStackAtTheLowerRightAndNeverTakeTheKeyboard) {
    const TypingTarget target(session, {u"in front"_s});
    ASSERT_TRUE(program.start());
    mouse.moveTo({10, 10});
    capture(1);
    ASSERT_TRUE(waitForUp(1));
    capture(2);
    ASSERT_TRUE(waitForUp(2));
    EXPECT_TRUE(windows.hasKeyboard(target.window(0)));
    EXPECT_EQ(target.focusLosses(0), 0);
    // 4 fit on this display.
    for (int number = 3; number <= 6; ++number)
        capture(number);
    EXPECT_TRUE(waitForUp(4));
}

TEST_F(ThumbnailTest, WhenTheirDisplayIsUnpluggedTheyMoveToAnother) {
    session.run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, u"640/160x800/200+640+0"_s, u"none"_s});
    session.run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, u"640/160x800/200+0+0"_s, u"screen"_s});
    ASSERT_TRUE(program.start());
    mouse.moveTo({1000, 10});
    ASSERT_EQ(program.command({u"capture"_s, u"screen"_s}).exitStatus, 0);
    ASSERT_TRUE(program.waitForRows(1));
    const auto isUpOn = [&](int rightEdge) {
        const QRect place = tile(0).translated(rightEdge - 1280, 0);
        const auto color = windows.colorAt({place.left() + 7, place.center().y()});
        return std::abs(color.red() - 31) <= 1 && std::abs(color.blue() - 36) <= 1;
    };
    ASSERT_TRUE(eventually([&] { return isUpOn(1280); }));
    session.run(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s});
    EXPECT_TRUE(eventually([&] { return isUpOn(640); }));
}

TEST_F(ThumbnailTest, AClickDismissesTheColumnAndShowsTheShelf) {
    ASSERT_TRUE(program.start());
    capture(1);
    capture(2);
    ASSERT_TRUE(waitForUp(2));
    mouse.click(tile(1).center());
    EXPECT_TRUE(eventually([this] { return shelf.isUp(); }));
    EXPECT_TRUE(waitForUp(0));
}

class ThumbnailButtonsTest : public ThumbnailTest, public ::testing::WithParamInterface<bool> {};

TEST_P(ThumbnailButtonsTest, CloseThePreviewTheyLieOn) {
    if (GetParam())
        startCompositor();
    ASSERT_TRUE(program.start());
    for (int number = 1; number <= 3; ++number)
        capture(number);
    ASSERT_TRUE(waitForUp(3));
    mouse.moveTo(tile(1).center());
    mouse.click(closeButton(1));
    EXPECT_TRUE(waitForUp(2));
    mouse.moveTo(tile(0).center());
    mouse.click(editButton(0));
    EXPECT_TRUE(waitForUp(1));
    mouse.moveTo(tile(0).center());
    mouse.click(closeButton(0));
    EXPECT_TRUE(waitForUp(0));
    EXPECT_FALSE(shelf.isUp());
    capture(4);
    EXPECT_TRUE(waitForUp(1));
}

INSTANTIATE_TEST_SUITE_P(Compositors, ThumbnailButtonsTest, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "Composited" : "Plain"; });

TEST_F(ThumbnailTest, ClicksOnOnePlaceCloseWhatComesThereAndNeverDismissAll) {
    startCompositor();
    ASSERT_TRUE(program.start());
    for (int number = 1; number <= 4; ++number)
        capture(number);
    ASSERT_TRUE(waitForUp(4));
    mouse.moveTo(tile(1).center());
    // The ones above slide over the place one after the other.
    EXPECT_TRUE(eventually([this] {
        mouse.click(closeButton(1));
        return areUp(1) || shelf.isUp();
    }));
    EXPECT_FALSE(shelf.isUp());
    EXPECT_TRUE(areUp(1)) << "the lowest one is below that place";
}

TEST_F(ThumbnailTest, ADragIntoAFileManagerMakesAFileOfACaptureWithoutPreviews) {
    const QString folder = session.path(u"home/dropped"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    session.start({.program = u"pcmanfm"_s, .arguments = {u"--no-desktop"_s, folder}});
    const auto window = activateWindowOfClass(session, u"Pcmanfm"_s).toUInt();
    ASSERT_TRUE(program.start());
    mouse.moveTo({10, 10});
    const auto before = screen.of(tile(0));
    capture(1);
    ASSERT_TRUE(waitForUp(1));
    capture(2);
    ASSERT_TRUE(waitForUp(2));
    // A program that is too busy to answer in time gets no drop, and a person tries again.
    ASSERT_TRUE(eventually([&] {
        mouse.drag(tile(0).center(), windows.frame(window).center() + QPoint(60, 60));
        return eventually([&] { return !filesIn(folder).isEmpty(); }, 5s);
    }));
    const auto name = filesIn(folder).front();
    EXPECT_TRUE(name.startsWith(u"Screenshot"_s) && name.endsWith(u".png"_s)) << name.toStdString();
    QImage dropped;
    ASSERT_TRUE(eventually([&] { return dropped.load(QDir(folder).filePath(name)); }));
    EXPECT_EQ(dropped.size(), QSize(1280, 800));
    EXPECT_EQ(dropped.copy(tile(0)).convertToFormat(before.format()), before)
        << "the first preview is not in it";
    EXPECT_TRUE(areUp(2)) << "a drag is no click";
    EXPECT_FALSE(shelf.isUp());
}

} // namespace
} // namespace kestrova::test
