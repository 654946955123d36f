#include "tests/Kestrova/AppDelegateFixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

class AppDelegateCaptureTest : public AppDelegateFixture {};

TEST_F(AppDelegateCaptureTest, ACaptureOfTheScreenBeginsByShortcutMenuAndCommand) {
    m_delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(m_hotKeys.press(key3, commandAndShift));
    m_queue.turn();
    EXPECT_EQ(rows().size(), 1U);
    m_delegate.perform(StatusMenuAction::captureFullScreen);
    m_queue.turn();
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_EQ(run(QStringLiteral("capture screen")), CommandReply{});
    m_queue.turn();
    EXPECT_EQ(rows().size(), 3U);
    EXPECT_EQ(m_soundPlayer.played, std::vector(3, QStringLiteral("Glass")));
    EXPECT_TRUE(m_captureSessions.modes.empty());
}

TEST_F(AppDelegateCaptureTest, ASelectionBeginsByShortcutMenuAndCommand) {
    m_delegate.applicationDidFinishLaunching();
    const auto begun = [&](const std::function<void()>& begin) {
        begin();
        m_queue.turn();
        m_captureSessions.end(m_captureSessions.selecting() - 1, std::nullopt);
        return m_captureSessions.modes.back();
    };
    EXPECT_EQ(begun([&] { m_hotKeys.press(key4, commandAndShift); }), CaptureMode::area);
    EXPECT_EQ(begun([&] { m_hotKeys.press(key6, commandAndShift); }), CaptureMode::window);
    EXPECT_EQ(begun([&] { m_delegate.perform(StatusMenuAction::captureArea); }), CaptureMode::area);
    EXPECT_EQ(begun([&] { m_delegate.perform(StatusMenuAction::captureWindow); }), CaptureMode::window);
    EXPECT_EQ(begun([&] { run(QStringLiteral("capture area")); }), CaptureMode::area);
    EXPECT_EQ(begun([&] { run(QStringLiteral("capture window")); }), CaptureMode::window);
    EXPECT_EQ(m_captureSessions.modes.size(), 6U);
}

TEST_F(AppDelegateCaptureTest, TheShelfStandsAsideWhileTheMouseSelects) {
    m_delegate.applicationDidFinishLaunching();
    m_delegate.perform(StatusMenuAction::togglePanel);
    m_queue.advance(1s);
    m_trace.take();
    m_hotKeys.press(key4, commandAndShift);
    EXPECT_THAT(m_trace.take(), testing::ElementsAre(QStringLiteral("1000 monitors.removeGlobal"),
                                                     QStringLiteral("1000 panel.setIgnoresMouseEvents 1")));
    m_queue.turn();
    m_captureSessions.end(0, std::nullopt);
    EXPECT_THAT(m_trace.take(), testing::ElementsAre(QStringLiteral("1000 panel.setIgnoresMouseEvents 0"),
                                                     QStringLiteral("1000 monitors.addGlobal 10")));
    EXPECT_TRUE(m_panel.isVisible());
}

TEST_F(AppDelegateCaptureTest, ACaptureMakesOneRow) {
    m_delegate.applicationDidFinishLaunching();
    run(QStringLiteral("capture screen"));
    m_queue.advance(2s);
    const auto all = rows();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.front()->source(), ItemSource::screenshot);
    EXPECT_EQ(m_toast, nullptr) << "a thumbnail tells of it";
}

TEST_F(AppDelegateCaptureTest, ACaptureMakesAPreviewAndAClickOnItShowsTheShelf) {
    m_delegate.applicationDidFinishLaunching();
    run(QStringLiteral("capture screen"));
    m_queue.turn();
    ASSERT_NE(m_previews, nullptr);
    ASSERT_EQ(m_previews->column.entries.size(), 1U);
    const auto entry = m_previews->column.entries.front();
    EXPECT_EQ(entry.image->pixels().size(), QSize(1920, 1080));
    EXPECT_EQ(QImage::fromData(entry.pngData, "PNG").size(), QSize(1920, 1080));
    m_previews->column.onEntryClick(entry.id);
    EXPECT_TRUE(m_panel.isVisible());
    m_queue.advance(1s);
    EXPECT_EQ(m_previews, nullptr) << "the column has gone";
    EXPECT_TRUE(m_panel.isVisible());
}

TEST_F(AppDelegateCaptureTest, AClickOnAPreviewLeavesAShelfThatIsUp) {
    m_delegate.applicationDidFinishLaunching();
    run(QStringLiteral("capture screen"));
    m_queue.turn();
    m_delegate.perform(StatusMenuAction::togglePanel);
    m_queue.advance(1s);
    ASSERT_NE(m_previews, nullptr);
    m_previews->column.onEntryClick(m_previews->column.entries.front().id);
    m_queue.advance(1s);
    EXPECT_TRUE(m_panel.isVisible());
}

TEST_F(AppDelegateCaptureTest, WithThumbnailsOffTheToastTellsOfACapture) {
    m_defaults.set(QStringLiteral("captureThumbnailEnabled"), false);
    m_delegate.applicationDidFinishLaunching();
    run(QStringLiteral("capture screen"));
    m_queue.turn();
    ASSERT_NE(m_toast, nullptr);
    EXPECT_EQ(m_toast->event, HUDEvent::captured);
}

} // namespace
} // namespace kestrova
