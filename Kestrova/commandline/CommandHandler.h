#pragma once

#include "Kestrova/commandline/Command.h"
#include "KestrovaCore/ModelContext.h"
#include "Platform/SingleInstance.h"

#include <functional>
#include <memory>

namespace kestrova {

class HUD;
class ItemOperations;
class MachineInfo;
class ModelContainer;
class Pasteboard;
class UserDefaults;
class Workspace;

/// Carries out the commands of later starts in the running program, through the operations that the shelf
/// uses. Main thread only.
class CommandHandler {
public:
    /// All of it outlives the handler.
    struct Surroundings {
        ModelContainer& container;
        Pasteboard& pasteboard;
        const Workspace& workspace;
        const UserDefaults& defaults;
        const MachineInfo& machineInfo;
        HUD& hud;
    };

    explicit CommandHandler(const Surroundings& surroundings);
    ~CommandHandler();

    CommandReply run(const QStringList& arguments);

    std::function<void()> onToggle;
    std::function<void()> onShow;
    std::function<void()> onHide;
    /// Whether a capture can begin now; the person is asked for what the host misses.
    std::function<bool()> mayCapture;
    /// Begin a capture.
    std::function<void()> onCaptureArea;
    std::function<void()> onCaptureWindow;
    std::function<void()> onCaptureFullScreen;
    /// Pastes the item into the application in front.
    std::function<void(const std::shared_ptr<ClipboardItem>&)> onPaste;
    std::function<bool()> isShelfVisible;
    /// The shortcuts that another program holds, in words for people.
    std::function<QStringList()> refusedShortcuts;
    /// The program was told to end; the answer is still to be sent.
    std::function<void()> onQuit;

private:
    CommandReply run(const StartCommand&);
    CommandReply run(const HelpCommand&);
    CommandReply run(const VersionCommand&);
    CommandReply run(const ToggleCommand&);
    CommandReply run(const ShowCommand&);
    CommandReply run(const HideCommand&);
    CommandReply run(const CaptureCommand& command);
    CommandReply run(const ListCommand& command);
    CommandReply run(const GetCommand& command);
    CommandReply run(const CopyCommand& command);
    CommandReply run(const PasteCommand& command);
    CommandReply run(const AddCommand& command);
    CommandReply run(const PinCommand& command);
    CommandReply run(const DeleteCommand& command);
    CommandReply run(const StatusCommand& command);
    CommandReply run(const QuitCommand&);

    Surroundings m_surroundings;
    ModelContext m_context;
    std::unique_ptr<ItemOperations> m_operations;
};

} // namespace kestrova
