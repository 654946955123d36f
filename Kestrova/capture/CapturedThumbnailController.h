#pragma once

#include "Kestrova/capture/ThumbnailEntry.h"
#include "Platform/MainQueue.h"
#include "Platform/Screens.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ThumbnailPanel;
class UserDefaults;

/// Owns the column of previews at the lower right of the screen with the mouse. A preview stays until the
/// person closes, edits or clicks one, or newer ones push it out; no capture shows the column. Main thread
/// only.
class CapturedThumbnailController {
public:
    struct Surroundings {
        const Screens& screens;
        const UserDefaults& defaults;
        MainQueue& mainQueue;
        /// Called whenever the column comes up.
        std::function<std::unique_ptr<ThumbnailPanel>()> makePanel;
    };

    /// What it is given outlives it.
    explicit CapturedThumbnailController(Surroundings surroundings);
    CapturedThumbnailController(const CapturedThumbnailController&) = delete;
    CapturedThumbnailController& operator=(const CapturedThumbnailController&) = delete;
    ~CapturedThumbnailController();

    /// Adds a preview, unless `captureThumbnailEnabled` is off.
    void show(const QImage& image, const QByteArray& pngData, const QString& suggestedName);

    /// The oldest first.
    const std::vector<ThumbnailEntry>& entries() const { return m_entries; }
    /// Also while it fades.
    bool isWindowUp() const { return m_window != nullptr; }

    /// Of the screen with the mouse, else of the main one, else of the first, without the desktop's panels;
    /// all zero if there is no screen.
    ScreenRect activeFrame() const;
    int maxVisibleEntries() const;
    /// Where the column stands with the entries that there are.
    ScreenRect windowFrame() const;

    /// A preview was clicked: the whole column goes.
    void entryClicked();
    /// Nothing for an entry that has gone.
    void entryEdit(QUuid id);
    void entryClose(QUuid id);

    /// A preview was clicked.
    std::function<void()> onClick;
    /// Its button for editing was pressed.
    std::function<void(const QImage& image, const QByteArray& pngData, const QString& suggestedName)> onEdit;

private:
    void presentWindow();
    void placeLost();
    void hideWindow();
    void fadeEnded();
    ScreenRect columnFrame(int entries) const;
    /// Wraps `act` so that it does nothing once the controller has gone.
    template<typename... Arguments>
    std::function<void(Arguments...)> whileAlive(void (CapturedThumbnailController::*act)(Arguments...));

    Surroundings m_surroundings;
    std::vector<ThumbnailEntry> m_entries;
    std::unique_ptr<ThumbnailPanel> m_window;
    /// In the windows that captures leave out.
    std::optional<std::uint32_t> m_registeredWindowNumber;
    std::shared_ptr<CapturedThumbnailController*> m_self;
};

} // namespace kestrova
