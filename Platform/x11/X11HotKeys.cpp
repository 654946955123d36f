#include "Platform/x11/X11HotKeys.h"

#include "Platform/MainQueue.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QLoggingCategory>

#include <utility>

namespace kestrova {

namespace {
Q_LOGGING_CATEGORY(lcHotKeys, "kestrova.hotkeys")
} // namespace

X11HotKeys::X11HotKeys(MainQueue& queue, X11Keymap& keymap)
    : m_delivery(std::make_shared<Delivery>()),
      m_menuKeys(keymap,
                 [delivery = m_delivery](OwnMenuKeys::Change change, std::uint32_t keyCode,
                                         std::uint32_t modifierFlags) {
                     using Kind = HotKeyEvent::Kind;
                     const bool isDown = change == OwnMenuKeys::Change::Down;
                     return delivery->handler &&
                            delivery->handler({.kind = isDown ? Kind::rawKeyDown : Kind::rawKeyUp,
                                               .identifier = {},
                                               .keyCode = keyCode,
                                               .modifierFlags = modifierFlags}) == 0;
                 }),
      m_thread(makeListener(queue), OwnWindows{toolkitConnection()}) {
    for (const auto onlooker : {HotKeyGrabs::Onlooker::tap, HotKeyGrabs::Onlooker::monitor}) {
        m_delivery->onlookers.try_emplace(onlooker, [this, onlooker](bool isEmpty) {
            m_thread.run([&](HotKeyGrabs& grabs) {
                if (isEmpty)
                    grabs.stopTelling(onlooker);
                else if (grabs.startTelling(onlooker))
                    m_granted.insert(onlooker);
                else
                    m_granted.erase(onlooker);
            });
        });
    }
}

HotKeyGrabs::Listener X11HotKeys::makeListener(MainQueue& queue) const {
    const std::weak_ptr weak{m_delivery};
    return {.hotKey =
                [&queue, weak](HotKeyEvent::Kind kind, HotKeyIdentifier identifier) {
                    queue.postFromAnyThread([weak, kind, identifier] {
                        const auto delivery = weak.lock();
                        if (delivery && delivery->deliversHotKeys && delivery->handler)
                            delivery->handler(
                                {.kind = kind, .identifier = identifier, .keyCode = 0, .modifierFlags = 0});
                    });
                },
            .keyDown =
                [&queue, weak](HotKeyGrabs::Onlooker onlooker, std::uint16_t keyCode) {
                    queue.postFromAnyThread([weak, onlooker, keyCode] {
                        if (const auto delivery = weak.lock())
                            delivery->onlookers.at(onlooker).any(
                                EventMask::keyDown, [keyCode](const EventMonitors::KeyDownHandler& handler) {
                                    handler(keyCode);
                                    return false;
                                });
                    });
                }};
}

bool X11HotKeys::installHandler(Handler handler) {
    bool isUsable = false;
    m_thread.run([&](const HotKeyGrabs& grabs) { isUsable = grabs.isUsable(); });
    if (!isUsable) {
        qCWarning(lcHotKeys, "[HotKeys] This X server cannot tell of hot keys");
        return false;
    }
    m_delivery->handler = std::move(handler);
    return true;
}

HotKeyRegistration X11HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                              HotKeyIdentifier identifier) {
    const HotKeyReference reference{++m_lastReference};
    int status = 0;
    m_thread.run(
        [&](HotKeyGrabs& grabs) { status = grabs.add(reference, keyCode, carbonModifiers, identifier); });
    return {status, status == 0 ? std::optional{reference} : std::nullopt};
}

void X11HotKeys::unregisterHotKey(HotKeyReference reference) {
    m_thread.run([&](HotKeyGrabs& grabs) { grabs.remove(reference); });
}

void X11HotKeys::deliverHotKeys(bool deliver) {
    m_delivery->deliversHotKeys = deliver;
}

std::unique_ptr<EventMonitor> X11HotKeys::tapKeyDowns(EventMonitors::KeyDownHandler handler) {
    return add(HotKeyGrabs::Onlooker::tap, std::move(handler));
}

std::unique_ptr<EventMonitor> X11HotKeys::addGlobalKeyDownMonitor(EventMonitors::KeyDownHandler handler) {
    return add(HotKeyGrabs::Onlooker::monitor, std::move(handler));
}

void X11HotKeys::handOverKeyboard(std::uint64_t window) {
    m_thread.run([&](HotKeyGrabs& grabs) { grabs.handOverKeyboard(static_cast<xcb_window_t>(window)); });
}

std::unique_ptr<EventMonitor> X11HotKeys::add(HotKeyGrabs::Onlooker onlooker,
                                              EventMonitors::KeyDownHandler handler) {
    auto monitor = m_delivery->onlookers.at(onlooker).add(EventMask::keyDown, std::move(handler));
    return m_granted.contains(onlooker) ? std::move(monitor) : nullptr;
}

} // namespace kestrova
