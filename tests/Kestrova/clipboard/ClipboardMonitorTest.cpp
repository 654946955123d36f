#include "Kestrova/clipboard/ClipboardMonitor.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/clipboard/PasteService.h"
#include "Kestrova/clipboard/TextRecognizer.h"
#include "Kestrova/services/LinkPreviewCache.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"
#include "tests/support/StoreFixture.h"

#include <QFile>

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

struct CopiedHUD final : HUD {
    void show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) override {
        EXPECT_EQ(event, HUDEvent::copied);
        shown.append(item->content());
        if (onShow)
            onShow();
    }
    QStringList shown;
    std::function<void()> onShow;
};

struct RecordingRecognizer final : TextRecognizer {
    void recognize(const std::shared_ptr<ClipboardItem>& item) override {
        asked.append(item->content());
        if (onRecognize)
            onRecognize();
    }
    QStringList asked;
    std::function<void()> onRecognize;
};

struct RecordingPreviews final : LinkPreviewCache {
    std::optional<Preview> cachedPreview(const QUrl&) const override { return std::nullopt; }
    QCoro::Task<> fetch(QUrl url) override {
        asked.append(url.toString());
        co_return;
    }
    QStringList asked;
};

class ClipboardMonitorTest : public StoreFixture {
protected:
    ClipboardMonitorTest() { ownWriteChangeCount = 0; }

    ClipboardMonitor& monitor() {
        if (!m_monitor) {
            m_monitor.emplace(ClipboardMonitor::Surroundings{
                .container = *m_container,
                .pasteboard = m_pasteboard,
                .mainQueue = m_queue,
                .defaults = m_defaults,
                .machineInfo = m_machineInfo,
                .hud = m_hud,
                .textRecognizer = m_recognizer,
                .linkPreviews = m_previews,
                .now = [this] { return moment(++m_clock); },
            });
        }
        return *m_monitor;
    }
    /// Copies elsewhere while the monitor is there, and polls.
    void copy(FakePasteboard::Entry entry) {
        auto& watching = monitor();
        m_pasteboard.copyElsewhere(std::move(entry));
        watching.poll();
    }
    void copy(const QString& copied) {
        copy(FakePasteboard::Entry{.types = QStringList{QString(PasteboardType::string)}, .text = copied});
    }
    QStringList rows() { return savedContents(*m_container); }
    /// The newest row as a context of its own reads it; it lives as long as the test.
    std::shared_ptr<ClipboardItem> newest() {
        const auto found = m_reader.fetch({.limit = 1});
        EXPECT_TRUE(found && !found.value().empty());
        return found.value().at(0);
    }
    static QStringList list(std::initializer_list<const char*> texts) {
        QStringList made;
        for (const auto* text : texts)
            made.append(QString::fromUtf8(text));
        return made;
    }
    static FakePasteboard::Entry text(const char* content,
                                      QStringList types = {QString(PasteboardType::string)}) {
        return {.types = std::move(types), .text = QString::fromUtf8(content)};
    }
    static FakePasteboard::Entry bitmap(const char* png) {
        return {.types = QStringList{QString(PasteboardType::image)},
                .image = PasteboardImage{QByteArray(png), QSize(3, 2)}};
    }
    FakePasteboard::Entry files(const QStringList& names) {
        FakePasteboard::Entry entry{.types = QStringList{QString(PasteboardType::fileURL)}};
        for (const auto& name : names)
            entry.urls.append(QUrl::fromLocalFile(m_directory.filePath(name)));
        entry.text = QStringLiteral("the paths as text");
        return entry;
    }
    void writeFile(const QString& name, const QByteArray& bytes) {
        QFile file(m_directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    FakePasteboard m_pasteboard;
    ManualMainQueue m_queue;
    InMemoryUserDefaults m_defaults;
    FakeMachineInfo m_machineInfo;
    CopiedHUD m_hud;
    RecordingRecognizer m_recognizer;
    RecordingPreviews m_previews;
    ModelContext m_reader{*m_container};
    std::optional<ClipboardMonitor> m_monitor;
    int m_clock = 0;
};

TEST_F(ClipboardMonitorTest, WhatIsOnThePasteboardAtLaunchIsNotRecorded) {
    m_pasteboard.copyElsewhere(QStringLiteral("before"));
    monitor().poll();
    EXPECT_EQ(rows(), list({}));
}

TEST_F(ClipboardMonitorTest, ACopyMakesARowWithWhatWasCopiedWhereAndWhen) {
    copy(text("  한글 text \n"));
    EXPECT_EQ(rows(), list({"  한글 text \n"}));
    const auto row = newest();
    EXPECT_EQ(row->rawType(), QStringLiteral("text"));
    EXPECT_EQ(row->rawSource(), QStringLiteral("clipboard"));
    EXPECT_EQ(row->sourceApp(), QStringLiteral("org.example.editor"));
    EXPECT_EQ(row->createdAt(), moment(1));
    EXPECT_FALSE(row->pinned());
    EXPECT_FALSE(row->hasImageData());
    EXPECT_FALSE(row->fileURLString());
    EXPECT_FALSE(row->collections());
    EXPECT_EQ(m_hud.shown, list({"  한글 text \n"}));
    EXPECT_TRUE(m_recognizer.asked.isEmpty());
}

TEST_F(ClipboardMonitorTest, PollsEveryFourHundredMillisecondsOnceStarted) {
    monitor().start();
    monitor().start();
    m_pasteboard.copyElsewhere(QStringLiteral("a"));
    m_queue.advance(399ms);
    EXPECT_EQ(rows(), list({}));
    m_queue.advance(1ms);
    EXPECT_EQ(rows(), list({"a"}));
    EXPECT_EQ(m_pasteboard.pollsFinished(), 1);
    m_monitor.reset();
    EXPECT_TRUE(m_queue.isEmpty());
}

TEST_F(ClipboardMonitorTest, APollWithoutAChangeReadsOnlyTheCounter) {
    monitor().poll();
    EXPECT_EQ(m_pasteboard.readersAsked(), 0);
    EXPECT_EQ(m_pasteboard.pollsFinished(), 0);
}

TEST_F(ClipboardMonitorTest, EntriesThatQueueAreAllRecordedOnePollEach) {
    m_pasteboard.onPollDue = [this] { monitor().poll(); };
    monitor();
    for (const auto* each : {"a", "b", "c"})
        m_pasteboard.copyElsewhere(QString::fromUtf8(each));
    EXPECT_EQ(rows(), list({"c", "b", "a"}));
    EXPECT_EQ(m_pasteboard.pollsFinished(), 3);
}

TEST_F(ClipboardMonitorTest, WithMonitoringOffCopiesMakeNoRowsAndTurningItOnDoesNotBringThemBack) {
    m_defaults.set(QStringLiteral("monitorEnabled"), false);
    copy(QStringLiteral("private"));
    EXPECT_EQ(m_pasteboard.readersAsked(), 0);
    m_defaults.set(QStringLiteral("monitorEnabled"), true);
    monitor().poll();
    EXPECT_EQ(rows(), list({}));
    copy(QStringLiteral("public"));
    EXPECT_EQ(rows(), list({"public"}));
}

TEST_F(ClipboardMonitorTest, AMonitorEnabledThatIsNoBooleanCountsAsOn) {
    m_defaults.set(QStringLiteral("monitorEnabled"), QStringLiteral("false"));
    copy(QStringLiteral("a"));
    m_defaults.set(QStringLiteral("monitorEnabled"), 0);
    copy(QStringLiteral("b"));
    EXPECT_EQ(rows(), list({"b", "a"}));
}

TEST_F(ClipboardMonitorTest, TheProgramsOwnWriteMakesNoRow) {
    monitor();
    PasteService::write(*makeText(QStringLiteral("from the history")), m_pasteboard);
    ownWriteChangeCount = m_pasteboard.changeCount();
    monitor().poll();
    EXPECT_EQ(rows(), list({}));
    copy(QStringLiteral("from the history"));
    EXPECT_EQ(rows(), list({"from the history"}));
}

TEST_F(ClipboardMonitorTest, AMarkedEntryMakesNoRowAndItsContentIsNeverAskedFor) {
    for (const auto marker : {"org.nspasteboard.ConcealedType", "org.nspasteboard.AutoGeneratedType",
                              "org.nspasteboard.TransientType"})
        copy(text("s3cret", {QString(PasteboardType::string), QString::fromLatin1(marker)}));
    EXPECT_EQ(rows(), list({}));
    EXPECT_EQ(m_pasteboard.readersAsked(), 0);
}

TEST_F(ClipboardMonitorTest, AnEntryWithoutTypesIsStillRead) {
    auto entry = text("a");
    entry.types = std::nullopt;
    copy(entry);
    EXPECT_EQ(rows(), list({"a"}));
}

TEST_F(ClipboardMonitorTest, ACopyMadeWhileThisProgramIsInFrontMakesNoRow) {
    auto entry = text("a");
    entry.frontmost = FakePasteboard::application(QStringLiteral("com.brelvane.Kestrova"));
    copy(entry);
    EXPECT_EQ(rows(), list({}));
}

TEST_F(ClipboardMonitorTest, AnAbsentApplicationInFrontRecordsWithoutOne) {
    auto none = text("nobody in front");
    none.frontmost = std::nullopt;
    copy(none);
    EXPECT_EQ(newest()->sourceApp(), std::nullopt);
    auto nameless = text("nameless in front");
    nameless.frontmost = RunningApplication{};
    copy(nameless);
    EXPECT_EQ(newest()->sourceApp(), std::nullopt);
    EXPECT_EQ(rows().size(), 2);
}

TEST_F(ClipboardMonitorTest, ASkippedChangeIsNeverLookedAtAgain) {
    auto entry = text("a");
    entry.frontmost = FakePasteboard::application(QStringLiteral("com.brelvane.Kestrova"));
    copy(entry);
    EXPECT_EQ(m_pasteboard.pollsFinished(), 1);
    monitor().poll();
    EXPECT_EQ(m_pasteboard.pollsFinished(), 1);
}

struct TextCase {
    const char* text;
    bool besideRTF;
    ClipboardItemType type;
};

class TypeOfCopiedText : public testing::TestWithParam<TextCase> {};

TEST_P(TypeOfCopiedText, IsTheFirstThatApplies) {
    EXPECT_EQ(typeOfCopiedText(QString::fromUtf8(GetParam().text), GetParam().besideRTF), GetParam().type)
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Table, TypeOfCopiedText,
                         testing::Values(TextCase{" #fff\n", true, ClipboardItemType::color},
                                         TextCase{"https://example.com", true, ClipboardItemType::url},
                                         TextCase{"plain", true, ClipboardItemType::rtf},
                                         TextCase{"plain", false, ClipboardItemType::text},
                                         TextCase{"  ", false, ClipboardItemType::text}));

TEST_F(ClipboardMonitorTest, RtfBesideTextMakesAnRtfRowWithThePlainText) {
    copy(text("rich", {QString(PasteboardType::rtf), QString(PasteboardType::string)}));
    EXPECT_EQ(newest()->type(), ClipboardItemType::rtf);
    EXPECT_EQ(newest()->content(), u"rich");
}

TEST_F(ClipboardMonitorTest, AColourIsStoredAsCopied) {
    copy(QStringLiteral(" #FFF\n"));
    EXPECT_EQ(newest()->type(), ClipboardItemType::color);
    EXPECT_EQ(newest()->content(), u" #FFF\n");
}

TEST_F(ClipboardMonitorTest, AnEmptyTextIsNotRecordedAndOneOfBlanksIs) {
    copy(QString());
    copy(QStringLiteral(""));
    EXPECT_EQ(rows(), list({}));
    copy(QStringLiteral("  "));
    EXPECT_EQ(rows(), list({"  "}));
}

TEST_F(ClipboardMonitorTest, AnEntryThatNoReaderUnderstandsMakesNoRow) {
    copy(FakePasteboard::Entry{.types = QStringList{QStringLiteral("application/x-own")}});
    EXPECT_EQ(rows(), list({}));
    EXPECT_TRUE(m_hud.shown.isEmpty());
}

TEST_F(ClipboardMonitorTest, CopyingTheSameTextTwiceMakesOneRowAndTheFirstMomentStays) {
    copy(QStringLiteral("a"));
    copy(QStringLiteral("a"));
    EXPECT_EQ(rows(), list({"a"}));
    EXPECT_EQ(newest()->createdAt(), moment(1));
    EXPECT_EQ(m_hud.shown, list({"a"}));
}

TEST_F(ClipboardMonitorTest, CopyingABAMakesThreeRows) {
    for (const auto* each : {"A", "B", "A"})
        copy(QString::fromUtf8(each));
    EXPECT_EQ(rows(), list({"A", "B", "A"}));
}

TEST_F(ClipboardMonitorTest, TheSameTextOfAnotherKindIsNoRepeat) {
    copy(text("a"));
    copy(text("a", {QString(PasteboardType::rtf)}));
    EXPECT_EQ(rows(), list({"a", "a"}));
}

TEST_F(ClipboardMonitorTest, ARepeatIsComparedWithTheNewestRowOfAnyKindAlsoWithoutARawType) {
    ModelContext elsewhere(*m_container);
    const auto screenshot = makeText(QStringLiteral("a"), 100);
    screenshot->setRawType(std::nullopt);
    screenshot->setPinned(true);
    screenshot->setSource(ItemSource::screenshot);
    elsewhere.insert(screenshot);
    ASSERT_TRUE(elsewhere.save());
    copy(QStringLiteral("a"));
    EXPECT_EQ(rows().size(), 2);
    screenshot->setType(ClipboardItemType::text);
    ASSERT_TRUE(elsewhere.save());
    copy(QStringLiteral("b"));
    copy(QStringLiteral("a"));
    // The pinned screenshot is still the newest by its moment, so this is its repeat.
    EXPECT_EQ(rows().size(), 3);
}

TEST_F(ClipboardMonitorTest, ABitmapMakesAnImageRowAndStartsRecognition) {
    copy(bitmap("png one"));
    const auto row = newest();
    EXPECT_EQ(row->content(), u"Image");
    EXPECT_EQ(row->type(), ClipboardItemType::image);
    EXPECT_EQ(row->imageData(), QByteArray("png one"));
    EXPECT_EQ(row->width(), 3);
    EXPECT_EQ(row->height(), 2);
    EXPECT_FALSE(row->fileURLString());
    EXPECT_FALSE(row->fileSize());
    EXPECT_EQ(m_recognizer.asked, list({"Image"}));
}

TEST_F(ClipboardMonitorTest, TwoDifferentBitmapsInARowMakeOneRow) {
    copy(bitmap("png one"));
    copy(bitmap("png two"));
    EXPECT_EQ(rows(), list({"Image"}));
    EXPECT_EQ(newest()->imageData(), QByteArray("png one"));
    EXPECT_EQ(m_recognizer.asked.size(), 1);
}

TEST_F(ClipboardMonitorTest, ABitmapComesBeforeTextAndFilesBeforeBoth) {
    auto entry = bitmap("png");
    entry.text = QStringLiteral("text beside it");
    copy(entry);
    EXPECT_EQ(newest()->type(), ClipboardItemType::image);
    entry.urls = {QUrl(QStringLiteral("file:///tmp/notes.txt"))};
    copy(entry);
    EXPECT_EQ(newest()->type(), ClipboardItemType::file);
}

TEST_F(ClipboardMonitorTest, ThreeFilesCopiedAtOnceMakeOneRowForTheFirst) {
    writeFile(QStringLiteral("one 하나.txt"), "12345");
    copy(files({QStringLiteral("one 하나.txt"), QStringLiteral("two"), QStringLiteral("three")}));
    const auto row = newest();
    EXPECT_EQ(rows(), QStringList{m_directory.filePath(QStringLiteral("one 하나.txt"))});
    EXPECT_EQ(row->type(), ClipboardItemType::file);
    EXPECT_TRUE(row->fileURLString()->startsWith(QStringLiteral("file:///")));
    EXPECT_TRUE(row->fileURLString()->endsWith(QStringLiteral("/one%20%ED%95%98%EB%82%98.txt")));
    EXPECT_EQ(row->fileSize(), 5);
    EXPECT_FALSE(row->hasImageData());
    EXPECT_TRUE(m_recognizer.asked.isEmpty());
}

TEST_F(ClipboardMonitorTest, AFileThatIsGoneIsRecordedWithoutASize) {
    copy(files({QStringLiteral("gone")}));
    EXPECT_EQ(newest()->type(), ClipboardItemType::file);
    EXPECT_EQ(newest()->fileSize(), std::nullopt);
}

TEST_F(ClipboardMonitorTest, ACopiedImageFileMakesAnImageRowWithTheFilesPathAddressAndSize) {
    writeFile(QStringLiteral("a.JPEG"), "123");
    auto entry = files({QStringLiteral("a.JPEG")});
    entry.filePictures[entry.urls[0]] = {QByteArray("decoded png"), QSize(10, 20)};
    copy(entry);
    const auto row = newest();
    EXPECT_EQ(row->content(), m_directory.filePath(QStringLiteral("a.JPEG")));
    EXPECT_EQ(row->type(), ClipboardItemType::image);
    EXPECT_EQ(row->imageData(), QByteArray("decoded png"));
    EXPECT_EQ(row->width(), 10);
    EXPECT_EQ(row->height(), 20);
    EXPECT_EQ(row->fileSize(), 3);
    EXPECT_EQ(row->fileURLString(), entry.urls[0].toString(QUrl::FullyEncoded));
    EXPECT_EQ(m_recognizer.asked.size(), 1);
}

TEST_F(ClipboardMonitorTest, ACopiedPngThatDoesNotDecodeMakesAFileRow) {
    writeFile(QStringLiteral("broken.png"), "no picture");
    copy(files({QStringLiteral("broken.png")}));
    EXPECT_EQ(newest()->type(), ClipboardItemType::file);
    EXPECT_EQ(newest()->fileSize(), 10);
}

TEST_F(ClipboardMonitorTest, AFileWithAnotherExtensionIsAFileEvenIfItHoldsAPicture) {
    auto entry = files({QStringLiteral("a.png.txt")});
    entry.filePictures[entry.urls[0]] = {QByteArray("png"), QSize(1, 1)};
    copy(entry);
    EXPECT_EQ(newest()->type(), ClipboardItemType::file);
}

TEST(ImageFileExtensionsTest, AreTheseTenInLowerCase) {
    auto sorted = ClipboardMonitor::imageFileExtensions().values();
    sorted.sort();
    EXPECT_EQ(sorted.join(u' '), u"bmp gif heic heif jpeg jpg png tif tiff webp");
}

TEST_F(ClipboardMonitorTest, ACopiedWebAddressAmongUrlsIsLeftToTheTextReader) {
    FakePasteboard::Entry entry{
        .types = QStringList{QString(PasteboardType::fileURL)},
        .urls = {QUrl(QStringLiteral("https://example.com/")), QUrl(QStringLiteral("file:///tmp/a"))},
        .text = QStringLiteral("https://example.com/")};
    copy(entry);
    EXPECT_EQ(newest()->type(), ClipboardItemType::url);
}

TEST_F(ClipboardMonitorTest, AWebAddressFetchesItsMetadataOnTheNextTurnEvenWithPreviewsOff) {
    m_defaults.set(QStringLiteral("autoLinkPreview"), false);
    copy(QStringLiteral("https://example.com/page"));
    EXPECT_TRUE(m_previews.asked.isEmpty());
    m_queue.turn();
    EXPECT_EQ(m_previews.asked, list({"https://example.com/page"}));
    copy(QStringLiteral("no address"));
    m_queue.turn();
    EXPECT_EQ(m_previews.asked.size(), 1);
}

class HistoryLimit : public ClipboardMonitorTest {
protected:
    void fill(int count, bool pinned = false) {
        ModelContext context(*m_container);
        for (int i = 0; i < count; ++i) {
            const auto item =
                makeText(QStringLiteral("%1 %2").arg(pinned ? u"pinned" : u"row").arg(i), i - 10'000);
            item->setPinned(pinned);
            context.insert(item);
        }
        ASSERT_TRUE(context.save());
    }
};

TEST_F(HistoryLimit, WithFiveHundredUnpinnedRowsTheOldestGoesAndPinnedOnesStay) {
    fill(3, true);
    fill(500);
    copy(QStringLiteral("the 501st"));
    const auto left = rows();
    EXPECT_EQ(left.size(), 503);
    EXPECT_EQ(left.first(), u"the 501st");
    EXPECT_FALSE(left.contains(QStringLiteral("row 0")));
    EXPECT_TRUE(left.contains(QStringLiteral("row 1")));
    EXPECT_TRUE(left.contains(QStringLiteral("pinned 0")));
}

TEST_F(HistoryLimit, AStoredZeroActsAsFiveHundredAndSoDoesNonsense) {
    fill(520);
    m_defaults.set(QStringLiteral("historyLimit"), 0);
    copy(QStringLiteral("a"));
    EXPECT_EQ(rows().size(), 500);
    m_defaults.set(QStringLiteral("historyLimit"), QStringLiteral("50"));
    copy(QStringLiteral("b"));
    m_defaults.set(QStringLiteral("historyLimit"), -3);
    copy(QStringLiteral("c"));
    EXPECT_EQ(rows().size(), 500);
}

TEST_F(HistoryLimit, IsAppliedWithTheNextNewRowAndNotByTheSettingOrARepeat) {
    fill(60);
    copy(QStringLiteral("a"));
    m_defaults.set(QStringLiteral("historyLimit"), 50);
    EXPECT_EQ(rows().size(), 61);
    copy(QStringLiteral("a"));
    EXPECT_EQ(rows().size(), 61);
    copy(QStringLiteral("b"));
    EXPECT_EQ(rows().size(), 50);
}

TEST_F(HistoryLimit, IsAppliedAfterTheToastAndBeforeRecognition) {
    fill(50);
    m_defaults.set(QStringLiteral("historyLimit"), 50);
    QStringList trace;
    const auto log = [&](const char* step) {
        trace.append(QStringLiteral("%1 %2").arg(QString::fromUtf8(step)).arg(rows().size()));
    };
    m_hud.onShow = [&] { log("toast"); };
    m_recognizer.onRecognize = [&] { log("recognition"); };
    copy(bitmap("png"));
    EXPECT_EQ(trace, list({"toast 51", "recognition 50"}));
}

TEST_F(HistoryLimit, CountsScreenshotsAndDeletesThem) {
    ModelContext context(*m_container);
    const auto screenshot = makeText(QStringLiteral("Screenshot"), -20'000);
    screenshot->setSource(ItemSource::screenshot);
    context.insert(screenshot);
    ASSERT_TRUE(context.save());
    fill(50);
    m_defaults.set(QStringLiteral("historyLimit"), 50);
    copy(QStringLiteral("a"));
    EXPECT_FALSE(rows().contains(QStringLiteral("Screenshot")));
    EXPECT_EQ(rows().size(), 50);
}

TEST_F(HistoryLimit, ARowThatIsDeletedWhileAnotherContextShowsItLeavesThatContextWithoutTrouble) {
    fill(50);
    const ItemQuery shown(m_reader);
    m_defaults.set(QStringLiteral("historyLimit"), 50);
    copy(QStringLiteral("a"));
    EXPECT_EQ(shown.results().size(), 50u);
    EXPECT_EQ(shown.results().front()->content(), u"a");
    EXPECT_EQ(shown.results().back()->content(), u"row 1");
}

TEST_F(ClipboardMonitorTest, ASaveThatFailsIsForgottenAndTheRowIsWrittenWithTheNextOne) {
    monitor();
    const LogCapture log;
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        copy(QStringLiteral("while busy"));
        EXPECT_EQ(rows(), list({}));
        EXPECT_EQ(m_hud.shown, list({"while busy"}));
    }
    copy(QStringLiteral("later"));
    EXPECT_EQ(rows(), list({"later", "while busy"}));
}

} // namespace
} // namespace kestrova
