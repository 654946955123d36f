#include "Kestrova/detail/widgets/ColorDetail.h"
#include "Kestrova/detail/widgets/ColorFormRow.h"
#include "Kestrova/detail/widgets/FileDetail.h"
#include "Kestrova/detail/widgets/ImageDetail.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "tests/Kestrova/detail/widgets/DetailFixture.h"
#include "tests/support/ManualMainQueue.h"

#include <atomic>

namespace kestrova {
namespace {

// Pictures

class ImageDetailTest : public DetailFixture {
protected:
    ImageDetailTest() {
        view.resize(300, 200);
        view.show();
    }
    bool isEmpty() {
        const auto shown = seen(view);
        const auto ground = shown.pixelColor(shown.rect().center());
        for (int y = 20; y < shown.height() - 20; ++y)
            for (int x = 20; x < shown.width() - 20; ++x)
                if (shown.pixelColor(x, y) != ground)
                    return false;
        return ground != shown.pixelColor(0, 0);
    }

    ImageDetail view{queue, decoder, nullptr};
};

TEST_F(ImageDetailTest, APictureIsFittedIntoTheRoom) {
    view.render(hold(picture(png({600, 300}, Qt::red))), dark);
    ASSERT_TRUE(waitFor([&] { return seenAt(view, {150, 100}) == QColor(Qt::red); }));
    const auto shown = seen(view);
    // The ground lies 8 within, and the picture 8 within that.
    EXPECT_EQ(shown.pixelColor(17, 100), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(282, 100), QColor(Qt::red));
    EXPECT_NE(shown.pixelColor(14, 100), QColor(Qt::red));
    EXPECT_NE(shown.pixelColor(150, 30), QColor(Qt::red));
}

TEST_F(ImageDetailTest, ASmallPictureIsNotEnlarged) {
    view.render(hold(picture(png({10, 10}, Qt::red))), dark);
    ASSERT_TRUE(waitFor([&] { return seenAt(view, {150, 100}) == QColor(Qt::red); }));
    EXPECT_NE(seenAt(view, {160, 100}), QColor(Qt::red));
}

TEST_F(ImageDetailTest, WithoutDataTheGroundStaysEmpty) {
    view.render(item(Type::image, QString()), dark);
    EXPECT_TRUE(isEmpty());
}

TEST_F(ImageDetailTest, WithDataThatIsNoPictureTheGroundStaysEmpty) {
    view.render(hold(picture("no picture")), dark);
    // One behind it has been decoded too by then.
    ImageDetail other(queue, decoder, nullptr);
    other.resize(300, 200);
    other.show();
    other.render(hold(picture(png({600, 300}, Qt::red))), dark);
    ASSERT_TRUE(waitFor([&] { return seenAt(other, {150, 100}) == QColor(Qt::red); }));
    EXPECT_TRUE(isEmpty());
}

TEST_F(ImageDetailTest, ThePictureOfBeforeIsNotShownForAnotherItem) {
    view.render(hold(picture(png({600, 300}, Qt::red))), dark);
    ASSERT_TRUE(waitFor([&] { return seenAt(view, {150, 100}) == QColor(Qt::red); }));
    view.render(hold(picture(png({600, 300}, Qt::blue))), dark);
    EXPECT_NE(seenAt(view, {150, 100}), QColor(Qt::red));
    EXPECT_TRUE(waitFor([&] { return seenAt(view, {150, 100}) == QColor(Qt::blue); }));
}

/// Counts what comes from other threads.
class ArrivalCounter final : public MainQueue {
public:
    explicit ArrivalCounter(MainQueue& queue) : m_queue(queue) {}

    int arrivals() const { return m_arrivals; }
    void postFromAnyThread(Block block) override {
        ++m_arrivals;
        m_queue.postFromAnyThread(std::move(block));
    }

protected:
    std::uint64_t schedule(Duration, Repeat, Block) override {
        ADD_FAILURE() << "only other threads are expected to post";
        return 0;
    }
    void cancel(std::uint64_t) override {}

private:
    MainQueue& m_queue;
    std::atomic<int> m_arrivals = 0;
};

TEST_F(ImageDetailTest, PicturesThatTheSelectionRunsPastAreNotDecoded) {
    ArrivalCounter counter(queue);
    PictureDecoder counted(counter);
    ManualMainQueue clock;
    ImageDetail running(clock, counted, nullptr);
    running.resize(300, 200);
    running.show();
    // Nothing that has been decoded arrives before the event loop runs.
    for (const auto& color : {Qt::red, Qt::green, Qt::yellow, Qt::blue}) {
        running.render(hold(picture(png({600, 300}, color))), dark);
        clock.advance(std::chrono::seconds{1});
    }
    ASSERT_TRUE(waitFor([&] { return seenAt(running, {150, 100}) == QColor(Qt::blue); }));
    EXPECT_EQ(counter.arrivals(), 2);
}

// Files

class FileDetailTest : public DetailFixture {
protected:
    FileDetailTest() { view.resize(400, 120); }
    void answer(std::size_t request, const QColor& color) {
        workspace.iconRequests.at(request).second(QIcon(QPixmap::fromImage(filled({128, 128}, color))));
    }

    FileDetail view{workspace, formatters, nullptr};
};

TEST_F(FileDetailTest, TheIconIsTheOneOfTheWorkspaceIn64Points) {
    view.render(item(Type::file, u"/home/user/a.txt"_qs), dark);
    ASSERT_EQ(workspace.iconRequests.size(), 1U);
    EXPECT_EQ(workspace.iconRequests[0].first, u"/home/user/a.txt");
    const auto before = seen(view);
    answer(0, Qt::red);
    const auto shown = seen(view);
    EXPECT_EQ(areaOf(Qt::red, shown), QRect(16, 16, 64, 64));
}

TEST_F(FileDetailTest, ASmallIconIsEnlarged) {
    view.render(item(Type::file, u"/home/user/a.txt"_qs), dark);
    workspace.iconRequests.at(0).second(QIcon(QPixmap::fromImage(filled({32, 32}, Qt::red))));
    EXPECT_EQ(areaOf(Qt::red, seen(view)), QRect(16, 16, 64, 64));
}

TEST_F(FileDetailTest, AFileOfWhichTheDesktopHasNoIconHasADrawing) {
    view.render(item(Type::file, u"/gone"_qs), dark);
    const auto before = seen(view);
    workspace.iconRequests.at(0).second(QIcon());
    EXPECT_NE(seen(view), before);
}

TEST_F(FileDetailTest, AnIconThatComesTooLateIsNotShownForAnotherFile) {
    view.render(item(Type::file, u"/first"_qs), dark);
    view.render(item(Type::file, u"/second"_qs), dark);
    answer(0, Qt::red);
    EXPECT_NE(seenAt(view, {48, 48}), QColor(Qt::red));
    answer(1, Qt::blue);
    EXPECT_EQ(seenAt(view, {48, 48}), QColor(Qt::blue));
}

TEST_F(FileDetailTest, AnIconThatComesWhenTheViewHasGoneDoesNoHarm) {
    {
        FileDetail going(workspace, formatters, nullptr);
        going.render(item(Type::file, u"/a"_qs), dark);
    }
    answer(0, Qt::red);
}

TEST_F(FileDetailTest, TheNameIsTheLastPathComponentAndTheSizeFollows) {
    const auto file = item(Type::file, u"/home/user/a.txt"_qs);
    view.render(file, dark);
    EXPECT_EQ(view.accessibleName(), u"a.txt");
    const auto without = seen(view);
    file->setFileSize(1'234'567);
    view.render(file, dark);
    EXPECT_EQ(view.accessibleName(), u"a.txt, 1.2 MB");
    EXPECT_NE(seen(view), without);
}

TEST_F(FileDetailTest, AChangedSizeAsksForNoIcon) {
    const auto file = item(Type::file, u"/a"_qs);
    view.render(file, dark);
    file->setFileSize(3);
    view.render(file, dark);
    EXPECT_EQ(workspace.iconRequests.size(), 1U);
}

// Colours

class ColorDetailTest : public DetailFixture {
protected:
    ColorDetailTest() {
        view.resize(400, 300);
        view.show();
    }
    auto rows() { return visibleParts<ColorFormRow>(view); }

    ColorDetail view{surroundings.onCopy, nullptr};
};

TEST_F(ColorDetailTest, TheSwatchHasTheColour) {
    view.render(item(Type::color, u"#ff0000"_qs), dark);
    EXPECT_EQ(seenAt(view, {200, 60}), QColor(Qt::red));
    view.render(item(Type::color, u"rgb(0, 0, 255)"_qs), dark);
    EXPECT_EQ(seenAt(view, {200, 60}), QColor(Qt::blue));
}

TEST_F(ColorDetailTest, ATranslucentColourLiesOnSquares) {
    const auto isPlain = [this] { return seenAt(view, {204, 60}) == seenAt(view, {212, 60}); };
    view.render(item(Type::color, u"#ff000080"_qs), dark);
    EXPECT_FALSE(isPlain());
    view.render(item(Type::color, u"#ff0000"_qs), dark);
    EXPECT_TRUE(isPlain());
}

TEST_F(ColorDetailTest, ATranslucentColourLooksAlikeInBothThemes) {
    view.render(item(Type::color, u"#ff000080"_qs), dark);
    const auto inDark = seenAt(view, {204, 60});
    view.render(item(Type::color, u"#ff000080"_qs), light);
    EXPECT_EQ(seenAt(view, {204, 60}), inDark);
}

TEST_F(ColorDetailTest, TheFormsStandInOrder12Apart) {
    view.render(item(Type::color, u"#3b82f6"_qs), dark);
    EXPECT_EQ(spokenNames(rows()),
              (QStringList{u"HEX: #3B82F6"_qs, u"RGB: rgb(59, 130, 246)"_qs, u"HSL: hsl(217, 91%, 60%)"_qs}));
    EXPECT_EQ(rows()[1]->y() - rows()[0]->geometry().bottom() - 1, 12);
    EXPECT_EQ(rows()[2]->y() - rows()[1]->geometry().bottom() - 1, 12);
}

TEST_F(ColorDetailTest, EachFormCanBeCopied) {
    view.render(hold(item(Type::color, u"#3b82f6"_qs)), dark);
    for (auto* const row : rows())
        QTest::mouseClick(visibleParts<SymbolButton>(*row).at(0), Qt::LeftButton);
    EXPECT_EQ(copied, (QStringList{u"#3B82F6"_qs, u"rgb(59, 130, 246)"_qs, u"hsl(217, 91%, 60%)"_qs}));
}

TEST_F(ColorDetailTest, TheCopyButtonsSayWhatTheyCopy) {
    view.render(item(Type::color, u"#fff"_qs), dark);
    EXPECT_EQ(spokenNames(visibleParts<SymbolButton>(view)),
              (QStringList{u"HEX 복사"_qs, u"RGB 복사"_qs, u"HSL 복사"_qs}));
}

TEST_F(ColorDetailTest, ATextThatCannotBeParsedShowsNoSwatchValuesAndTheViewStaysAlive) {
    for (const auto& text : {u"rgb(1, 2)"_qs, u"no colour"_qs, QString(), QString(100'000, u'#')}) {
        view.render(item(Type::color, text), dark);
        EXPECT_TRUE(rows().empty());
        EXPECT_FALSE(seen(view).isNull());
    }
    view.render(item(Type::color, u"#fff"_qs), light);
    EXPECT_EQ(rows().size(), 3U);
}

} // namespace
} // namespace kestrova
