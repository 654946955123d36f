#pragma once

#include "Kestrova/capture/CaptureSelection.h"
#include "Kestrova/capture/CaptureSession.h"

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
class Screens;
class SoundPlayer;
class UserDefaults;

/// The entry of every capture, and what every finished one has in common: sound, PNG, pasteboard, file, row,
/// and who hears of it. Main thread only.
class CaptureCoordinator : public std::enable_shared_from_this<CaptureCoordinator> {
public:
    /// All of it outlives the coordinator and its tasks.
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

    explicit CaptureCoordinator(Surroundings surroundings);

    /// Does nothing while a session runs.
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
    void finishCapture(const QImage& image);
    void playCaptureSound() const;
    void reportFailure(const std::exception& error, const std::optional<CaptureSelection>& selection);

    Surroundings m_surroundings;
    std::shared_ptr<CaptureSession> m_session;
};

} // namespace kestrova
