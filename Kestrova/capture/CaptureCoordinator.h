#pragma once

#include "Kestrova/capture/CaptureSelection.h"
#include "Kestrova/capture/CaptureSession.h"
#include "Platform/Screens.h"

#include <QByteArray>
#include <QCoroTask>
#include <QImage>
#include <QString>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class CaptureDiagnostics;
class HUD;
class MachineInfo;
class MainQueue;
class ModelContainer;
class Pasteboard;
class ScreenContent;
class SoundPlayer;
class UserDefaults;

/// The entry of every capture, and what every finished one has in common: sound, PNG, pasteboard, file, row,
/// and who hears of it. Main thread only.
class CaptureCoordinator : public std::enable_shared_from_this<CaptureCoordinator> {
public:
    /// All of it outlives the coordinator; the ports outlive its tasks too.
    struct Surroundings {
        ModelContainer& modelContainer;
        MainQueue& mainQueue;
        ScreenContent& screenContent;
        const Screens& screens;
        Pasteboard& pasteboard;
        SoundPlayer& soundPlayer;
        const UserDefaults& defaults;
        const MachineInfo& machineInfo;
        HUD& hud;
        CaptureDiagnostics& diagnostics;
        std::function<std::shared_ptr<CaptureSession>(CaptureMode)> makeSession;
    };

    /// To be owned by a shared pointer.
    explicit CaptureCoordinator(Surroundings surroundings);

    /// Whether the host lets this program take pictures now. Has it ask for the permission where it is
    /// missing.
    bool mayCapture() const;
    /// Lets the person select an area or a window, and captures it. Does nothing while a session runs.
    void beginSession(CaptureMode mode);
    /// The display under the mouse, at once.
    void captureFullScreen();

    /// A session exists and has shown nothing yet.
    std::function<void()> onCaptureSessionWillStart;
    /// The session has ended, whatever it selected.
    std::function<void()> onCaptureSessionDidEnd;
    /// Last in a finished capture: the picture, its PNG and a file name for it.
    std::function<void(const QImage& image, const QByteArray& pngData, const QString& suggestedName)>
        onDidCapture;

private:
    using Self = std::weak_ptr<CaptureCoordinator>;
    /// What a task works with, also once the coordinator has gone.
    struct Ports {
        MainQueue& mainQueue;
        ScreenContent& screenContent;
        const Screens& screens;
    };

    static QCoro::Task<> runSession(Self weakSelf, Ports ports, std::shared_ptr<CaptureSession> session);
    static QCoro::Task<> runFullScreen(Self weakSelf, Ports ports, Screen screen);
    static QCoro::Task<QImage> picture(Ports ports, CaptureSelection selection);
    static QCoro::Task<> finishOrReport(Self weakSelf, QCoro::Task<QImage> capture,
                                        std::optional<CaptureSelection> selection);

    Ports ports() const;
    void finishCapture(const QImage& image, const std::optional<CaptureSelection>& selection);
    void playCaptureSound() const;
    void reportFailure(const std::exception& error, const std::optional<CaptureSelection>& selection);

    Surroundings m_surroundings;
    std::shared_ptr<CaptureSession> m_session;
};

} // namespace kestrova
