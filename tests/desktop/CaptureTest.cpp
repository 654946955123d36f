#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PaintedWindow.h"
#include "tests/desktop/Rows.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/ShelfTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QUrl>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage pictureIn(const QByteArray& png) {
    return QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGB32);
}

/// Captures of whole displays, from the person's request to what other programs get of them.
class CaptureTest : public ShelfTest {
protected:
    // The machine may have nothing to play sounds on, and the log tells that.
    CaptureTest() { program.editDefault(u"captureSoundEnabled"_s, false); }

    void capture() { ASSERT_EQ(program.command({u"capture"_s, u"screen"_s}).exitStatus, 0); }
    QString folder() const { return session.path(u"home/Pictures/Kestrova"_s); }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files, QDir::Name); }
    QByteArray pngOf(const QString& id) {
        return program.command({u"get"_s, id, u"--image"_s, u"-"_s}).standardOutput;
    }
    QByteArray newestPng() { return pngOf(program.newestRow()[u"id"].toString()); }
    QByteArray pastedPng() {
        return session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s, u"-o"_s})
            .standardOutput;
    }
    QString log() { return QString::fromUtf8(program.process().standardError()); }

    QJsonObject screenshotRow(QSize size, const QJsonValue& file) {
        QJsonObject row = bitmapRow(size.width(), size.height(), u"com.brelvane.Kestrova"_s);
        row[u"content"_s] = u"Screenshot"_s;
        row[u"rawSource"_s] = u"screenshot"_s;
        row[u"fileURLString"_s] = file;
        return row;
    }

    Mouse mouse{session.display()};
    ScreenPicture screen{session.display()};
};

TEST_F(CaptureTest, TheShortcutCapturesTheScreen) {
    ASSERT_TRUE(program.start());
    const auto before = screen.of({0, 0, 1280, 800});
    keys.chord({keyAt::super, keyAt::shift, keyAt::digit(3)});
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(pictureIn(newestPng()), before);
}

TEST_F(CaptureTest, ACaptureIsNoCopyOfAnotherProgram) {
    ASSERT_TRUE(program.start());
    capture();
    ASSERT_TRUE(program.waitForRows(1));
    // The monitor has looked at the capture's write when it has recorded what came after it.
    const SelectionOwner owner(session.display(), plainText("afterwards"));
    ASSERT_TRUE(program.waitForNewest(u"afterwards"_s));
    EXPECT_EQ(program.contents(), (QStringList{u"afterwards"_s, u"Screenshot"_s}));
}

TEST_F(CaptureTest, ThePasteboardHoldsNothingBesideThePicture) {
    ASSERT_TRUE(program.start());
    capture();
    ASSERT_TRUE(program.waitForRows(1));
    const auto targets = ClipboardReader(session.display()).targets();
    EXPECT_EQ(
        std::ranges::count_if(targets, [](const QByteArray& target) { return target.startsWith("image/"); }),
        1);
    EXPECT_EQ(
        std::ranges::count_if(targets, [](const QByteArray& target) { return target.startsWith("text/"); }),
        0);
}

TEST_F(CaptureTest, TwoWithinASecondMakeTwoFiles) {
    ASSERT_TRUE(program.start());
    for (int count = 1; count <= 3; ++count) {
        capture();
        ASSERT_TRUE(program.waitForRows(count));
    }
    EXPECT_EQ(files().size(), 3);
}

TEST_F(CaptureTest, TheShelfThatIsUpIsInThePicture) {
    startWith({u"words"_s});
    ASSERT_TRUE(shelf.open());
    const QRect frame = shelf.frame();
    // The hint bar: it neither blinks nor tells of the capture.
    const QRect hints(frame.left() + 20, frame.bottom() - 30, frame.width() - 40, 20);
    const PaintedWindow background(session.display(),
                                   {.rect = {0, 0, 100, 100}, .color = Qt::red, .isUnmanaged = true});
    // Until it has faded in.
    QImage shown;
    ASSERT_TRUE(eventually([&] {
        shown = screen.of(hints);
        return shown.pixelColor(0, 0).lightness() > 200 &&
               throughout(300ms, [&] { return screen.of(hints) == shown; });
    }));
    capture();
    ASSERT_TRUE(program.waitForRows(2));
    const auto taken = pictureIn(newestPng());
    EXPECT_EQ(taken.copy(hints), shown);
    EXPECT_EQ(taken.pixelColor(50, 50), QColor(Qt::red));
    EXPECT_NE(taken.pixelColor(frame.center()), taken.pixelColor(frame.left() / 2, frame.center().y()));
    EXPECT_TRUE(shelf.isUp());
}

TEST_F(CaptureTest, WithThumbnailsOffTheToastTellsOfIt) {
    program.editDefault(u"captureThumbnailEnabled"_s, false);
    program.editDefault(u"hudDurationMs"_s, 3000);
    ASSERT_TRUE(program.start());
    const auto isUp = [this] {
        return std::ranges::any_of(windows.ofProcess(program.process().pid()), [this](xcb_window_t own) {
            const QSize size = windows.frame(own).size();
            return size.width() > 100 && size.width() < 400 && size.height() < 150;
        });
    };
    EXPECT_FALSE(isUp());
    capture();
    EXPECT_TRUE(eventually(isUp));
}

TEST_F(CaptureTest, AFolderThatCannotBeMadeCostsTheFileAndALineOfTheLog) {
    program.editDefault(u"screenshotFolder"_s, session.writeFile(u"a file"_s, "x") + u"/below"_s);
    ASSERT_TRUE(program.start());
    capture();
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(withoutIdentity(program.newestRow()), screenshotRow({1280, 800}, QJsonValue::Null));
    EXPECT_EQ(pastedPng(), newestPng());
    EXPECT_EQ(log().count(u'\n'), 1) << log().toStdString();
    EXPECT_TRUE(log().contains(u"[ScreenshotSaver] failed to create folder: "_s)) << log().toStdString();
}

TEST_F(CaptureTest, ASoundTellsThatItWasTaken) {
    const QString heard = session.path(u"heard"_s);
    session.environment().insert(u"CANBERRA_DRIVER"_s, u"alsa"_s);
    session.environment().insert(
        u"ALSA_CONFIG_PATH"_s,
        session.writeFile(u"asound.conf"_s, "pcm.!default { type file file \"" + QFile::encodeName(heard) +
                                                "\" format raw slave.pcm { type null } }\n"));
    program.editDefault(u"captureSoundEnabled"_s, true);
    ASSERT_TRUE(program.start());
    capture();
    constexpr int waveHeader = 44;
    const QByteArray glass =
        bytesOf(QFileInfo(QStringLiteral(KESTROVA_BINARY)).path() + u"/sounds/Glass.wav"_s).mid(waveHeader);
    ASSERT_FALSE(glass.isEmpty());
    EXPECT_TRUE(eventually([&] { return bytesOf(heard).contains(glass); }));
}

TEST_F(CaptureTest, TheCommandIsWrongUseWithoutItsTarget) {
    EXPECT_EQ(program.command({u"capture"_s}).exitStatus, 2);
    EXPECT_EQ(program.command({u"capture"_s, u"everything"_s}).exitStatus, 2);
    EXPECT_EQ(program.command({u"capture"_s, u"screen"_s}).exitStatus, 3) << "the program does not run";
}

const QRect leftDisplay(0, 0, 640, 800);
const QRect rightDisplay(640, 100, 640, 600);

/// Two displays, the left one at twice the scale, with a window across both.
class CaptureOnTwoDisplaysTest : public CaptureTest {
protected:
    CaptureOnTwoDisplaysTest() {
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, u"640/169x800/211+0+0"_s, u"screen"_s});
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, u"640/169x600/158+640+100"_s, u"none"_s});
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"L=2;R=1"_s);
    }

    const PaintedWindow across{
        session.display(), {.rect = {501, 203, 333, 177}, .color = QColor(30, 160, 60), .isUnmanaged = true}};
};

class CaptureOfDisplay : public CaptureOnTwoDisplaysTest, public ::testing::WithParamInterface<QRect> {};

TEST_P(CaptureOfDisplay, IsTheSameToThePixelInRowFileAndPasteboard) {
    ASSERT_TRUE(program.start());
    // The pointer stands in the picture's place and is not in it.
    mouse.moveTo(GetParam().center());
    const QImage shown = screen.of(GetParam());
    capture();
    ASSERT_TRUE(program.waitForRows(1));
    ASSERT_EQ(files().size(), 1);
    const QString file = QDir(folder()).filePath(files().first());
    EXPECT_EQ(withoutIdentity(program.newestRow()),
              screenshotRow(GetParam().size(), QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)));
    const QByteArray png = bytesOf(file);
    EXPECT_EQ(pictureIn(png), shown);
    EXPECT_EQ(newestPng(), png);
    EXPECT_EQ(pastedPng(), png);
    const auto seenByOthers = session.run(u"identify"_s, {u"-format"_s, u"%m %wx%h"_s, file});
    EXPECT_EQ(seenByOthers.exitStatus, 0) << seenByOthers.standardError.toStdString();
    EXPECT_EQ(QString::fromLatin1(seenByOthers.standardOutput),
              u"PNG %1x%2"_s.arg(GetParam().width()).arg(GetParam().height()));
    EXPECT_EQ(log(), QString());
}

INSTANTIATE_TEST_SUITE_P(LeftAndRight, CaptureOfDisplay, ::testing::Values(leftDisplay, rightDisplay),
                         [](const auto& row) { return row.index == 0 ? "Left" : "Right"; });

TEST_F(CaptureOnTwoDisplaysTest, OnceItsDisplayHasGoneTheMouseMeansTheMainOne) {
    ASSERT_TRUE(program.start());
    const auto shown = screen.of(leftDisplay);
    mouse.moveTo(rightDisplay.center());
    capture();
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(program.newestRow()[u"height"].toInt(), rightDisplay.height());
    session.run(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s});
    // The program learns of it a moment later; until then the capture may fail, and then leaves no row.
    EXPECT_TRUE(eventually([&] {
        capture();
        return program.newestRow()[u"height"].toInt() == leftDisplay.height();
    }));
    EXPECT_EQ(pictureIn(newestPng()), shown);
}

} // namespace
} // namespace kestrova::test
