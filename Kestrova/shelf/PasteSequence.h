#pragma once

#include "Platform/MainQueue.h"
#include "Platform/RunningApplication.h"

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class Accessibility;
class ClipboardItem;
class HUD;
class KeyPoster;
class Pasteboard;
class Workspace;

/// The timed steps that bring an item into the application in which the person works. The delays are what
/// makes the paste land there: a window manager needs a moment after a window went, and an application one
/// after it came to the front.
///
/// A sequence that has begun runs to its end whatever the person does meanwhile; it holds the item until
/// then. Nothing tells of a failure: the item is on the pasteboard and can be pasted by hand. Main thread
/// only.
class PasteSequence {
public:
    /// All of it outlives every sequence.
    struct Surroundings {
        MainQueue& mainQueue;
        Pasteboard& pasteboard;
        Workspace& workspace;
        KeyPoster& keyPoster;
        Accessibility& accessibility;
        HUD& hud;
    };
    using Item = std::shared_ptr<ClipboardItem>;
    using Target = std::optional<RunningApplication>;

    explicit PasteSequence(const Surroundings& surroundings) : m_surroundings(surroundings) {}

    /// For a panel that has just gone from the screen: gives it time to go, then brings `target` to the front
    /// and pastes by key.
    void pasteAfterClosing(const Item& item, const Target& target) const;
    /// Inserts the text straight into `target` if that takes it; else brings it to the front, pastes by key,
    /// and then calls `finally`, if there is one.
    void pasteInto(const Item& item, const Target& target, std::function<void()> finally) const;

private:
    void showToast(const Item& item) const;
    void writeAndActivate(const Item& item, const Target& target) const;

    Surroundings m_surroundings;
};

} // namespace kestrova
