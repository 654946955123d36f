#pragma once

#include "Kestrova/capture/CaptureCoordinator.h"
#include "Kestrova/capture/CaptureDiagnostics.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "tests/support/EffectTrace.h"
#include "tests/support/FakeCaptureSessions.h"
#include "tests/support/FakeScreenContent.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"
#include "tests/support/StoreFixture.h"

#include <QDir>

#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

class TracedDiagnostics final : public CaptureDiagnostics {
public:
    explicit TracedDiagnostics(EffectTrace& effects) : m_trace(effects) {}
    void reportCaptureFailure(const std::exception& error,
                              const std::optional<CaptureSelection>& selection) override {
        reported.push_back(selection);
        m_trace.add(QStringLiteral("diagnostics.report %1").arg(QString::fromUtf8(error.what())));
    }

    std::vector<std::optional<CaptureSelection>> reported;

private:
    EffectTrace& m_trace;
};

/// A coordinator on one display of 200 by 100 points at twice the pixels, with a store, a folder for its
/// files and a trace of what it does.
class CaptureFixture : public StoreFixture {
protected:
    CaptureFixture() {
        ownWriteChangeCount = 0;
        screens.all = {
            {.identifier = 7, .frame = {0, 0, 200, 100}, .visibleFrame = {0, 0, 200, 100}, .scale = 2}};
        screens.mouse = {100, 50};
        content.add(7, {0, 0, 200, 100}, 2);
        content.content.windows = {window};
        defaults.set(QStringLiteral("screenshotFolder"), folder());
        soundPlayer.onPlay = [this](const QString& name) {
            trace.add(QStringLiteral("sound.play %1").arg(name));
        };
        coordinator->onCaptureSessionWillStart = [this] { trace.add(QStringLiteral("sessionWillStart")); };
        coordinator->onCaptureSessionDidEnd = [this] { trace.add(QStringLiteral("sessionDidEnd")); };
        coordinator->onDidCapture = [this](const QImage& image, const QByteArray& png, const QString& name) {
            handedOver.push_back({image, png, name});
            trace.add(QStringLiteral("didCapture %1x%2").arg(image.width()).arg(image.height()));
        };
    }

    struct HandedOver {
        QImage image;
        QByteArray png;
        QString name;
    };

    /// Those of the trace without the moments.
    QStringList effects() {
        auto lines = trace.take();
        for (auto& line : lines)
            line.remove(0, line.indexOf(u' ') + 1);
        return lines;
    }
    QString folder() const { return m_directory.filePath(QStringLiteral("pictures")); }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files); }
    std::size_t rows() const {
        ModelContext context(*m_container);
        return context.fetchCount({}).value();
    }
    std::vector<std::shared_ptr<ClipboardItem>> fetchedRows() { return reader.fetch({}).value(); }
    /// The area's size is that of the display unless it is given.
    static CaptureSelection area(double width = 200, double height = 100) {
        return AreaSelection{.rect = {0, 0, width, height}, .frozen = {}};
    }
    static CaptureSelection frozenArea(double width = 200, double height = 100) {
        return AreaSelection{.rect = {0, 0, width, height},
                             .frozen = FakeScreenContent::filled({400, 200}, Qt::red)};
    }
    CaptureSelection windowSelection() const { return WindowSelection{window}; }
    /// Begins a session, which is then the index-th that selects.
    void begin(CaptureMode mode = CaptureMode::area) {
        coordinator->beginSession(mode);
        queue.turn();
    }
    void captureFullScreen() {
        coordinator->captureFullScreen();
        queue.turn();
    }

    const ShareableWindow window{.windowID = 42,
                                 .windowLayer = 0,
                                 .isOnScreen = true,
                                 .frame = {10, 10, 50, 40},
                                 .title = QStringLiteral("a window"),
                                 .owningApplication = {}};
    ManualMainQueue queue;
    EffectTrace trace{queue};
    TracedPasteboard pasteboard{trace};
    FakeScreens screens;
    InMemoryUserDefaults defaults;
    FakeMachineInfo machineInfo;
    FakeSoundPlayer soundPlayer;
    TracedDiagnostics diagnostics{trace};
    TracedHUD hud{trace};
    ModelContext reader{*m_container};
    std::vector<HandedOver> handedOver;
    FakeScreenContent content;
    std::shared_ptr<CaptureCoordinator> coordinator =
        std::make_shared<CaptureCoordinator>(CaptureCoordinator::Surroundings{
            .modelContainer = *m_container,
            .mainQueue = queue,
            .screenContent = content,
            .screens = screens,
            .pasteboard = pasteboard,
            .soundPlayer = soundPlayer,
            .defaults = defaults,
            .machineInfo = machineInfo,
            .hud = hud,
            .diagnostics = diagnostics,
            .makeSession = [this](CaptureMode mode) { return sessions.make(mode); }});
    FakeCaptureSessions sessions;
};

} // namespace kestrova
