#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Sharing.h"

#include <functional>
#include <memory>

namespace kestrova {

class ClipboardItem;
class ShelfPanel;
class Workspace;

/// Hands items over to other applications. Each time that one is about to be in front, the shelf is told to
/// step aside. Main thread only.
class ItemHandover {
public:
    /// All of it outlives the object.
    struct Surroundings {
        MainQueue& mainQueue;
        Workspace& workspace;
        Sharing& sharing;
        ShelfPanel& panel;
    };

    ItemHandover(const Surroundings& surroundings, std::function<void()> onStepAside);

    /// What an application that the item is shared with gets: its picture, which is not read here, its file
    /// as long as that exists, its web address, else its text.
    static SharedContent sharedContent(const ClipboardItem& item);

    /// With its default application. Nothing happens to an item without a file; so too in `revealFile`.
    void openFile(const ClipboardItem& item) const;
    void revealFile(const ClipboardItem& item) const;
    void open(const QUrl& url) const;
    void reveal(const QUrl& file) const;
    /// On the next turn asks for an application, and hands the item over to the one that is chosen. Of two
    /// requests within a turn the later one counts.
    void share(const std::shared_ptr<ClipboardItem>& item);

private:
    void pickTarget(const ClipboardItem& item) const;

    Surroundings m_surroundings;
    std::function<void()> m_onStepAside;
    ScheduledBlock m_share;
};

} // namespace kestrova
