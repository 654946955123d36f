#pragma once

#include "Kestrova/shelf/PasteSequence.h"
#include "Platform/RunningApplication.h"
#include "Platform/Screens.h"

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;
class EventMonitor;
class EventMonitors;
class LinkPreviewCache;
class ModelContainer;
class ShelfPanel;
class ShelfPanelView;
class Sharing;
class UserDefaults;

/// Owns what happens to the shelf's window: where it stands, how it comes and goes, and how the keyboard is
/// given back to the application that the person came from. It knows nothing of filters or selection. Main
/// thread only.
class ShelfPanelController {
public:
    /// All of it outlives the controller.
    struct Surroundings {
        ModelContainer& modelContainer;
        MainQueue& mainQueue;
        Pasteboard& pasteboard;
        Workspace& workspace;
        const Screens& screens;
        EventMonitors& eventMonitors;
        KeyPoster& keyPoster;
        Accessibility& accessibility;
        UserDefaults& defaults;
        HUD& hud;
        ShelfPanel& panel;
        Sharing& sharing;
        LinkPreviewCache& linkPreviews;
    };

    explicit ShelfPanelController(const Surroundings& surroundings);
    ShelfPanelController(const ShelfPanelController&) = delete;
    ShelfPanelController& operator=(const ShelfPanelController&) = delete;
    ~ShelfPanelController();

    /// Does not look at whether the panel is up already.
    void showPanel();
    /// Gives the keyboard back to the application that was in front before.
    void hidePanel();
    /// What the shortcut and the menu do.
    void togglePanel();
    bool isPanelVisible() const;
    /// Visible, and no other window is in front.
    bool isPanelInFront() const;

    /// A capture session owns the screen: the panel stays where it is, lets clicks through and does not close
    /// on them.
    void enterCaptureMode();
    void exitCaptureMode();

    /// Pastes into the application that was in front before the panel, and closes the panel or lets it stay,
    /// by `shelfStayOpenAfterPaste`.
    void paste(const std::shared_ptr<ClipboardItem>& item);

    ShelfPanelView& view() { return *m_view; }
    /// The application that was in front when the panel was last shown. The panel itself is none: where it
    /// was in front, the one before stands.
    const std::optional<RunningApplication>& previousApp() const { return m_previousApp; }
    /// Where the panel would stand on the screen under the mouse; absent if there is no screen.
    std::optional<ScreenRect> frame() const;

    /// Opens the screenshot editor on an image.
    std::function<void(const std::shared_ptr<ClipboardItem>&)> onEditImageRequested;

private:
    void notePreviousApp();
    void fadeOut();
    void pressedElsewhere();
    bool isAnotherInFront() const;
    void changeWidth(double width);
    void installMouseMonitor();
    void activatePanel();
    /// `act` with this controller, or nothing once it has gone.
    std::function<void()> whileAlive(std::function<void(ShelfPanelController&)> act);

    Surroundings m_surroundings;
    PasteSequence m_pasteSequence;
    std::optional<RunningApplication> m_previousApp;
    std::unique_ptr<EventMonitor> m_globalMouseMonitor;
    bool m_isCaptureModeActive = false;
    bool m_viewHasAppeared = false;
    double m_currentWidth;
    std::shared_ptr<ShelfPanelController*> m_self;
    std::unique_ptr<ShelfPanelView> m_view;
};

} // namespace kestrova
