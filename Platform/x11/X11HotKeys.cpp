#include "Platform/x11/X11HotKeys.h"

#include "Platform/MainQueue.h"

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
      m_thread(
          [&queue, weak = std::weak_ptr{m_delivery}](HotKeyEvent::Kind kind, HotKeyIdentifier identifier) {
              queue.postFromAnyThread([weak, kind, identifier] {
                  const auto delivery = weak.lock();
                  if (delivery && delivery->deliversHotKeys && delivery->handler)
                      delivery->handler(
                          {.kind = kind, .identifier = identifier, .keyCode = 0, .modifierFlags = 0});
              });
          }) {}

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

} // namespace kestrova
