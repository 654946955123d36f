#include "Kestrova/capture/ScreenshotSaver.h"
#include "tests/Kestrova/capture/CaptureFixture.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QUrl>
#include <QVariant>

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class CaptureCoordinatorTest : public CaptureFixture {
protected:
    void turnOff(const char* key) { defaults.set(QString::fromLatin1(key), false); }
    QStringList world() const {
        return {QStringLiteral("files %1").arg(files().size()), QStringLiteral("rows %1").arg(rows())};
    }
};

const QRegularExpression
    fileName(QStringLiteral("^Screenshot \\d{4}-\\d{2}-\\d{2} at \\d{2}\\.\\d{2}\\.\\d{2}( \\d+)?\\.png$"));

TEST_F(CaptureCoordinatorTest, AFinishedCaptureHappensInItsOrder) {
    turnOff("captureThumbnailEnabled");
    // The pasteboard polls what waits there before it takes the write: that moment shows what is done so far.
    pasteboard.inner.copyElsewhere(QStringLiteral("of another program"));
    pasteboard.onPollDue = [&] {
        trace.add(QStringLiteral("pasteboard is about to be written: ") + world().join(u' '));
    };
    ItemQuery history(reader);
    history.onChange = [&] {
        const auto& item = *history.results().front();
        EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
        EXPECT_TRUE(item.hasImageData());
        trace.add(QStringLiteral("row saved: ") + world().join(u' '));
    };
    captureFullScreen();
    EXPECT_THAT(trace.take(),
                ElementsAre(QStringLiteral("0 sound.play Glass"),
                            QStringLiteral("0 pasteboard is about to be written: files 0 rows 0"),
                            QStringLiteral("0 pasteboard.write (other)"),
                            QStringLiteral("0 row saved: files 1 rows 1"),
                            QStringLiteral("0 hud.captured Screenshot"),
                            QStringLiteral("0 didCapture 400x200")));
}

TEST_F(CaptureCoordinatorTest, TheRowTellsOfTheCapture) {
    const auto before = currentTimestamp();
    content.picture = [](const ContentFilter&, const PictureConfiguration& configuration) {
        return FakeScreenContent::filled(configuration.pixels, Qt::darkCyan);
    };
    captureFullScreen();
    const auto all = fetchedRows();
    ASSERT_THAT(all, SizeIs(1));
    const auto& item = *all.front();
    EXPECT_EQ(item.content(), u"Screenshot");
    EXPECT_EQ(item.rawType(), QStringLiteral("image"));
    EXPECT_EQ(item.sourceApp(), QStringLiteral("com.brelvane.Kestrova"));
    EXPECT_GE(item.createdAt(), before);
    EXPECT_LE(item.createdAt(), currentTimestamp());
    EXPECT_FALSE(item.pinned());
    EXPECT_EQ(item.rawSource(), QStringLiteral("screenshot"));
    EXPECT_EQ(item.width(), 400);
    EXPECT_EQ(item.height(), 200);
    EXPECT_EQ(item.fileSize(), std::nullopt);
    EXPECT_EQ(item.ocrText(), std::nullopt);
    ASSERT_TRUE(item.imageData());
    const auto decoded = QImage::fromData(*item.imageData(), "PNG");
    EXPECT_EQ(decoded.size(), QSize(400, 200));
    EXPECT_EQ(decoded.pixelColor(399, 199), QColor(Qt::darkCyan));
}

TEST_F(CaptureCoordinatorTest, RowPasteboardFileAndHandOverHaveTheSameBytes) {
    captureFullScreen();
    ASSERT_THAT(files(), SizeIs(1));
    EXPECT_THAT(files().first().toStdString(), testing::Truly([](const std::string& name) {
                    return fileName.match(QString::fromStdString(name)).hasMatch();
                }));
    QFile file(QDir(folder()).filePath(files().first()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto bytes = file.readAll();
    EXPECT_FALSE(bytes.isEmpty());
    EXPECT_THAT(pasteboard.inner.written(), ElementsAre(PasteboardEntry(PngData{bytes})));
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_EQ(handedOver.front().png, bytes);
    EXPECT_EQ(handedOver.front().name, files().first());
    EXPECT_EQ(handedOver.front().image.size(), QSize(400, 200));
    const auto all = fetchedRows();
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_EQ(all.front()->imageData(), bytes);
    EXPECT_EQ(all.front()->fileURLString(),
              QUrl::fromLocalFile(file.fileName()).toString(QUrl::FullyEncoded));
}

TEST_F(CaptureCoordinatorTest, WithoutAFileTheRowHasNoAddressAndTheNameIsMade) {
    turnOff("screenshotAutoSave");
    captureFullScreen();
    EXPECT_THAT(files(), IsEmpty());
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_TRUE(fileName.match(handedOver.front().name).hasMatch()) << handedOver.front().name.toStdString();
    const auto all = fetchedRows();
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_EQ(all.front()->fileURLString(), std::nullopt);
}

TEST_F(CaptureCoordinatorTest, AFolderThatCannotBeMadeCostsTheFileAndALineOfTheLog) {
    QFile obstacle(folder());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const LogCapture log;
    captureFullScreen();
    EXPECT_THAT(log.lines(), SizeIs(1));
    EXPECT_EQ(rows(), 1U);
    EXPECT_THAT(pasteboard.inner.written(), SizeIs(1));
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_TRUE(fileName.match(handedOver.front().name).hasMatch());
}

QByteArray inWords(const QJsonValue& value) {
    return value.isUndefined() ? QByteArray("absent") : value.toVariant().toString().toUtf8();
}

struct Sound {
    QJsonValue enabled;
    QJsonValue name;
    QString played;
};
void PrintTo(const Sound& row, std::ostream* stream) {
    *stream << inWords(row.enabled).constData() << ", " << inWords(row.name).constData();
}
class CaptureSound : public CaptureCoordinatorTest, public testing::WithParamInterface<Sound> {};

TEST_P(CaptureSound, IsWhatTheDefaultsSay) {
    defaults.set(QStringLiteral("captureSoundEnabled"), GetParam().enabled);
    defaults.set(QStringLiteral("captureSoundName"), GetParam().name);
    captureFullScreen();
    const auto played = effects().filter(QStringLiteral("sound."));
    EXPECT_EQ(played, GetParam().played.isEmpty()
                          ? QStringList()
                          : QStringList{QStringLiteral("sound.play ") + GetParam().played});
    EXPECT_EQ(rows(), 1U);
}

const QJsonValue absent = QJsonValue::Undefined;
INSTANTIATE_TEST_SUITE_P(Table, CaptureSound,
                         testing::Values(Sound{absent, absent, QStringLiteral("Glass")},
                                         Sound{true, absent, QStringLiteral("Glass")},
                                         Sound{false, absent, {}}, Sound{false, QStringLiteral("Pop"), {}},
                                         Sound{QStringLiteral("no"), absent, QStringLiteral("Glass")},
                                         Sound{0, absent, QStringLiteral("Glass")},
                                         Sound{absent, QStringLiteral("Pop"), QStringLiteral("Pop")},
                                         Sound{absent, 3, QStringLiteral("Glass")}));

struct Toast {
    QJsonValue thumbnails;
    bool isShown;
};
void PrintTo(const Toast& row, std::ostream* stream) {
    *stream << inWords(row.thumbnails).constData();
}
class CaptureToast : public CaptureCoordinatorTest, public testing::WithParamInterface<Toast> {};

TEST_P(CaptureToast, IsShownOnlyWithThumbnailsOffAndTheHandOverHappensAnyway) {
    defaults.set(QStringLiteral("captureThumbnailEnabled"), GetParam().thumbnails);
    captureFullScreen();
    EXPECT_EQ(effects().contains(QStringLiteral("hud.captured Screenshot")), GetParam().isShown);
    EXPECT_THAT(handedOver, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(Table, CaptureToast,
                         testing::Values(Toast{false, true}, Toast{true, false}, Toast{absent, false},
                                         Toast{QStringLiteral("false"), false}));

TEST_F(CaptureCoordinatorTest, APictureThatCannotBeEncodedIsASoundAndNothingElse) {
    content.picture = [](const ContentFilter&, const PictureConfiguration&) { return QImage(); };
    captureFullScreen();
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("sound.play Glass")));
    EXPECT_EQ(rows(), 0U);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CaptureCoordinatorTest, ARowThatCannotBeSavedChangesNothingElse) {
    turnOff("captureThumbnailEnabled");
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        captureFullScreen();
    }
    EXPECT_THAT(effects(),
                ElementsAre(QStringLiteral("sound.play Glass"), QStringLiteral("pasteboard.write (other)"),
                            QStringLiteral("hud.captured Screenshot"), QStringLiteral("didCapture 400x200")));
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_THAT(files(), SizeIs(1));
    EXPECT_EQ(rows(), 0U);
    captureFullScreen();
    EXPECT_EQ(rows(), 1U) << "the next capture is a piece of work of its own";
}

TEST_F(CaptureCoordinatorTest, AnUnansweredPermissionIsAskedForAndNothingElseHappens) {
    content.hasAccess = false;
    coordinator->beginSession(CaptureMode::area);
    EXPECT_EQ(content.accessRequests, 1);
    coordinator->captureFullScreen();
    EXPECT_EQ(content.accessRequests, 2);
    queue.advance(1s);
    EXPECT_THAT(sessions.modes, IsEmpty());
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_EQ(content.contentRequests, 0);
}

TEST_F(CaptureCoordinatorTest, AFullScreenCaptureBeginsAtTheNextTurnWithoutASession) {
    coordinator->captureFullScreen();
    EXPECT_EQ(content.contentRequests, 0);
    queue.turn();
    EXPECT_EQ(rows(), 1U);
    EXPECT_EQ(queue.now(), 0ms);
    EXPECT_THAT(sessions.modes, IsEmpty());
    EXPECT_THAT(effects().filter(QStringLiteral("session")), IsEmpty());
}

TEST_F(CaptureCoordinatorTest, AFullScreenCaptureTakesTheFirstDisplayWithTheMouseElseTheMainOne) {
    const Screen right{
        .identifier = 8, .frame = {200, 0, 50, 50}, .visibleFrame = {200, 0, 50, 50}, .scale = 1};
    const Screen mirror{
        .identifier = 9, .frame = {200, 0, 80, 80}, .visibleFrame = {200, 0, 80, 80}, .scale = 1};
    screens.all.push_back(right);
    screens.all.push_back(mirror);
    content.add(8, right.frame);
    content.add(9, mirror.frame);
    const auto taken = [&](QPointF mouse) {
        screens.mouse = mouse;
        captureFullScreen();
        const auto* const display = std::get_if<DisplayFilter>(&content.captures.back().filter);
        return display ? display->displayID : 0;
    };
    EXPECT_EQ(taken({199.5, 0}), 7U);
    EXPECT_EQ(taken({200, 0}), 8U) << "the left edge belongs to it, and it stands before its mirror";
    EXPECT_EQ(taken({260, 60}), 9U);
    screens.main = right;
    EXPECT_EQ(taken({1000, 1000}), 8U);
}

TEST_F(CaptureCoordinatorTest, WithoutAnyDisplayAFullScreenCaptureEndsSilently) {
    const LogCapture log;
    screens.all.clear();
    captureFullScreen();
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(CaptureCoordinatorTest, AFailedFullScreenCaptureIsLoggedAndReportedWithoutASelection) {
    pasteboard.inner.copyElsewhere(QStringLiteral("as it was"));
    content.pictureError = screenContentError(ScreenContentError::Code::displayGone);
    const LogCapture log;
    captureFullScreen();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("[CaptureCoordinator] capture failed: as the test wants it")));
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("diagnostics.report as the test wants it")));
    EXPECT_THAT(diagnostics.reported, ElementsAre(testing::Eq(std::nullopt)));
    EXPECT_EQ(rows(), 0U);
    EXPECT_EQ(pasteboard.string(), QStringLiteral("as it was"));
}

TEST_F(CaptureCoordinatorTest, ASecondCaptureWithinASecondIsHandedOverUnderTheNameOfItsOwnFile) {
    // Taken already, for as long as the test may run.
    QDir().mkpath(folder());
    const auto now = QDateTime::currentDateTime();
    QStringList taken;
    for (int second = 0; second < 120; ++second) {
        taken.append(ScreenshotSaver::datedName(now.addSecs(second)) + QStringLiteral(".png"));
        QFile file(QDir(folder()).filePath(taken.last()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    captureFullScreen();
    auto added = files();
    for (const auto& name : taken)
        added.removeOne(name);
    ASSERT_THAT(added, SizeIs(1));
    EXPECT_TRUE(added.first().endsWith(u" 2.png")) << qPrintable(added.first());
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_EQ(handedOver.front().name, added.first());
}

TEST_F(CaptureCoordinatorTest, TheSoundComesBeforeThePictureIsEncoded) {
    // Pixels that are not the picture's own, so that they can still change.
    std::vector<QRgb> pixels(400 * 200, qRgb(10, 20, 30));
    content.picture = [&](const ContentFilter&, const PictureConfiguration& configuration) {
        return QImage(reinterpret_cast<const uchar*>(pixels.data()), configuration.pixels.width(),
                      configuration.pixels.height(), QImage::Format_RGB32);
    };
    soundPlayer.onPlay = [&](const QString&) { std::ranges::fill(pixels, qRgb(40, 50, 60)); };
    captureFullScreen();
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_EQ(QImage::fromData(handedOver.front().png, "PNG").pixelColor(0, 0), QColor(40, 50, 60));
}

TEST_F(CaptureCoordinatorTest, ASoundThatFailsIsReportedAndCostsNothingElse) {
    soundPlayer.onPlay = [](const QString&) { throw std::runtime_error("no sound"); };
    const LogCapture log;
    captureFullScreen();
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("[CaptureCoordinator] capture failed: no sound")));
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("diagnostics.report no sound"),
                                       QStringLiteral("pasteboard.write (other)"),
                                       QStringLiteral("didCapture 400x200")));
    EXPECT_EQ(rows(), 1U);
    EXPECT_THAT(files(), SizeIs(1));
}

TEST_F(CaptureCoordinatorTest, WhateverFailsOnceThePictureIsThereIsLoggedAndReported) {
    pasteboard.inner.copyElsewhere(QStringLiteral("of another program"));
    pasteboard.onPollDue = [] { throw std::runtime_error("no memory"); };
    const LogCapture log;
    begin();
    sessions.end(0, frozenArea());
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("[CaptureCoordinator] capture failed: no memory")));
    ASSERT_THAT(diagnostics.reported, SizeIs(1));
    EXPECT_TRUE(diagnostics.reported.front()) << "with its selection";
    EXPECT_EQ(rows(), 0U);
}

TEST_F(CaptureCoordinatorTest, ACaptureOutlivesItsCoordinatorAndNobodyHearsOfIt) {
    content.holdsPictures = true;
    captureFullScreen();
    coordinator->captureFullScreen();
    coordinator.reset();
    content.heldPictures.give(0);
    queue.turn();
    EXPECT_EQ(content.heldPictures.asked(), 1U) << "the second had not begun";
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_EQ(rows(), 0U);
}

TEST_F(CaptureCoordinatorTest, TheEndOfTheProgramUnwindsACaptureWithoutAReport) {
    const LogCapture log;
    content.holdsPictures = true;
    captureFullScreen();
    content.heldPictures.fail(0, std::make_exception_ptr(MainQueueClosed()));
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace kestrova
