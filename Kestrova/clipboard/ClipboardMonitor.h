#pragma once

#include "Kestrova/clipboard/OwnWrite.h"
#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/ModelContext.h"
#include "KestrovaCore/Timestamp.h"
#include "Platform/MainQueue.h"

#include <QSet>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;
class HUD;
class LinkPreviewCache;
class MachineInfo;
class ModelContainer;
class Pasteboard;
class TextRecognizer;
class UserDefaults;
struct PasteboardImage;

/// Turns changes of the general pasteboard into rows of the history, and starts what must follow a new row.
/// Errors of the store and of the file system are dropped where they occur: the tick ends or goes on. Main
/// thread only.
class ClipboardMonitor {
public:
    /// What the monitor works with; all of it outlives the monitor.
    struct Surroundings {
        ModelContainer& container;
        Pasteboard& pasteboard;
        MainQueue& mainQueue;
        UserDefaults& defaults;
        const MachineInfo& machineInfo;
        HUD& hud;
        TextRecognizer& textRecognizer;
        LinkPreviewCache& linkPreviews;
        std::function<Timestamp()> now = currentTimestamp;
    };

    static constexpr std::chrono::milliseconds pollInterval{400};

    /// What is on the pasteboard now is never recorded.
    explicit ClipboardMonitor(Surroundings surroundings);
    ClipboardMonitor(const ClipboardMonitor&) = delete;
    ClipboardMonitor& operator=(const ClipboardMonitor&) = delete;

    /// Polls every 0.4 seconds from now on. Does nothing if that is so already.
    void start();
    /// One step: records the present entry of the pasteboard if it is new and nothing forbids it.
    void poll();

    /// Extensions of the files that are recorded as pictures, in lower case.
    static const QSet<QString>& imageFileExtensions();

private:
    bool isRecordable(std::int64_t changeCount) const;
    std::shared_ptr<ClipboardItem> candidate() const;
    std::shared_ptr<ClipboardItem> readFile() const;
    std::shared_ptr<ClipboardItem> readImage() const;
    std::shared_ptr<ClipboardItem> readText() const;
    std::shared_ptr<ClipboardItem> makeItem(const QString& content, ClipboardItemType type) const;
    /// False for a repeat of the newest row, which is dropped.
    bool insert(const std::shared_ptr<ClipboardItem>& candidate);
    void applyHistoryLimit();
    void saveAndForgetFailure();
    void follow(const std::shared_ptr<ClipboardItem>& item);

    Surroundings m_surroundings;
    Pasteboard& m_pasteboard;
    ModelContext m_context;
    std::int64_t m_lastChangeCount;
    ScheduledBlock m_timer;
};

/// How copied text is filed: a colour, a web address, or text, which is `rtf` where rich text was offered
/// beside it.
ClipboardItemType typeOfCopiedText(const QString& text, bool besideRichText);

} // namespace kestrova
