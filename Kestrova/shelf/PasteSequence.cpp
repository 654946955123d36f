#include "Kestrova/shelf/PasteSequence.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/clipboard/PasteService.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/Pasteboard.h"
#include "Platform/Workspace.h"

#include <QCoroTask>

#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

// Until the window that was ordered out has gone for the window manager too.
constexpr auto beforeWriteWhenClosing = 80ms;
constexpr auto beforeWriteWhenStaying = 50ms;
// From the write on: until the application that was activated takes keys, and until it has taken these.
constexpr auto beforeKeystroke = 50ms;
constexpr auto beforeReturn = 180ms;

} // namespace

void PasteSequence::showToast(const Item& item) const {
    m_surroundings.mainQueue.post([&hud = m_surroundings.hud, item] { hud.show(item, HUDEvent::pasted); });
}

void PasteSequence::writeAndActivate(const Item& item, const Target& target) const {
    PasteService::write(*item, m_surroundings.pasteboard);
    ownWriteChangeCount = m_surroundings.pasteboard.changeCount();
    if (target)
        m_surroundings.workspace.activate(*target);
}

void PasteSequence::pasteAfterClosing(const Item& item, const Target& target) const {
    showToast(item);
    m_surroundings.mainQueue.after(beforeWriteWhenClosing, [sequence = *this, item, target] {
        sequence.writeAndActivate(item, target);
        sequence.m_surroundings.mainQueue.after(beforeKeystroke, [sequence, target] {
            PasteService::postPasteKeystroke(sequence.m_surroundings.keyPoster, target);
        });
    });
}

void PasteSequence::pasteInto(const Item& item, const Target& target, std::function<void()> finally) const {
    showToast(item);
    // Arguments, not captures: the frame outlives this call.
    [](PasteSequence sequence, Item pasted, Target into, std::function<void()> then) -> QCoro::Task<> {
        const auto& [mainQueue, pasteboard, workspace, keyPoster, accessibility, hud] =
            sequence.m_surroundings;
        if (co_await PasteService::insertViaAccessibility(pasted, into, accessibility, workspace, pasteboard))
            co_return;
        co_await mainQueue.delay(beforeWriteWhenStaying);
        sequence.writeAndActivate(pasted, into);
        mainQueue.after(beforeKeystroke,
                        [&poster = keyPoster, into] { PasteService::postPasteKeystroke(poster, into); });
        if (then)
            mainQueue.after(beforeReturn, std::move(then));
    }(*this, item, target, std::move(finally));
}

} // namespace kestrova
