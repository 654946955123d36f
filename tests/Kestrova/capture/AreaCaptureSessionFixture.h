#pragma once

#include "Kestrova/capture/AreaCaptureSession.h"
#include "Kestrova/capture/SelectionOverlayView.h"
#include "tests/support/EffectTrace.h"
#include "tests/support/FakeOverlayPanel.h"
#include "tests/support/FakeScreenContent.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <utility>

namespace kestrova {

namespace Key {
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t space = 49;
inline constexpr std::uint16_t f = 3;
inline constexpr std::uint16_t a = 0;
} // namespace Key

/// Display 1 of 1920 x 1080 and, to its right and 180 points lower, display 2 of 1280 x 800.
class AreaCaptureSessionFixture : public testing::Test {
protected:
    struct Outcome {
        int ends = 0;
        std::optional<CaptureSelection> result;
    };

    AreaCaptureSessionFixture() {
        screens.all = {display(1, {0, 0, 1920, 1080}, 1), display(2, {1920, -180, 1280, 800}, 2)};
        screens.main = screens.all.front();
        for (const auto& screen : screens.all)
            content.add(screen.identifier, screen.frame, screen.scale);
    }
    ~AreaCaptureSessionFixture() override {
        // What it puts back is told to what goes before the queue.
        if (session)
            session->finish(std::nullopt);
        queue.turn();
    }

    static Screen display(std::uint32_t identifier, const ScreenRect& frame, double scale) {
        return {.identifier = identifier, .frame = frame, .visibleFrame = frame, .scale = scale};
    }
    void makeSession(CaptureMode mode) {
        session = std::make_shared<AreaCaptureSession>(
            mode, AreaCaptureSession::Surroundings{
                      .mainQueue = queue,
                      .screenContent = content,
                      .screens = screens,
                      .eventMonitors = monitors,
                      .workspace = workspace,
                      .machineInfo = machineInfo,
                      .makePanel = [this](const Screen& screen) { return panels.make(screen); }});
    }
    /// Does not turn the queue.
    void begin(CaptureMode mode) {
        makeSession(mode);
        run(session, outcome);
    }
    /// Until everything that falls due at the start has happened.
    void select(CaptureMode mode) {
        begin(mode);
        queue.advance(std::chrono::milliseconds{50});
        trace.take();
    }

    static QCoro::Task<> run(std::shared_ptr<AreaCaptureSession> session, std::shared_ptr<Outcome> outcome) {
        outcome->result = co_await session->select();
        ++outcome->ends;
    }

    void key(std::uint16_t keyCode) {
        monitors.onKeyDown(keyCode);
        queue.turn();
    }
    SelectionOverlayView& view(std::size_t index = 0) { return *panels.all.at(index)->view; }
    void drag(QPointF from, QPointF to, std::size_t onDisplay = 0) {
        // The session may let go of it.
        const auto dragged = panels.all.at(onDisplay)->view;
        dragged->mouseDown(from);
        dragged->mouseDragged(to);
        dragged->mouseUp(to);
        queue.turn();
    }
    void click(QPointF point) { drag(point, point); }

    static ShareableWindow window(std::uint32_t windowID, const QRectF& frame,
                                  const QString& title = QStringLiteral("Title")) {
        return {.windowID = windowID,
                .windowLayer = 0,
                .isOnScreen = true,
                .frame = frame,
                .title = title,
                .owningApplication =
                    SharingApplication{QStringLiteral("org.example.Editor"), QStringLiteral("Editor")}};
    }
    /// Shows the windows, the first one in front.
    void show(const std::vector<ShareableWindow>& windows) {
        content.content.windows = windows;
        content.order.clear();
        for (const auto& each : windows)
            content.order.push_back(each.windowID);
    }
    std::vector<std::uint32_t> available() const {
        std::vector<std::uint32_t> numbers;
        for (const auto& each : session->availableWindows().value_or(std::vector<ShareableWindow>{}))
            numbers.push_back(each.windowID);
        return numbers;
    }
    std::uint32_t hovered() const {
        return session->hoveredWindow() ? session->hoveredWindow()->windowID : 0;
    }

    bool isRunning() const { return outcome->ends == 0; }
    bool isCancelled() const { return outcome->ends == 1 && !outcome->result; }
    /// Absent if it has not ended in an area.
    std::optional<AreaSelection> area() const { return selected<AreaSelection>(); }
    std::optional<WindowSelection> selectedWindow() const { return selected<WindowSelection>(); }

    FakeScreenContent content;
    FakeScreens screens;
    FakeMachineInfo machineInfo;
    ManualMainQueue queue;
    EffectTrace trace{queue};
    TracedEventMonitors monitors{trace};
    TracedWorkspace workspace{trace};
    FakeOverlayPanels panels{[this](const QString& effect) { trace.add(effect); }};
    std::shared_ptr<AreaCaptureSession> session;
    std::shared_ptr<Outcome> outcome = std::make_shared<Outcome>();

private:
    template<typename Selection>
    std::optional<Selection> selected() const {
        const auto* const result = outcome->result ? std::get_if<Selection>(&*outcome->result) : nullptr;
        return outcome->ends == 1 && result ? std::optional(*result) : std::nullopt;
    }
};

} // namespace kestrova
