#include "Kestrova/StatusMenu.h"

#include <algorithm>

namespace kestrova {
namespace {

QString launchAtLoginTitle() {
    return QStringLiteral("로그인 시 자동 실행");
}

StatusMenuEntry separator() {
    return {};
}

StatusMenuEntry heading(const QString& title) {
    return {.title = title, .action = {}, .keyEquivalent = {}, .isEnabled = false, .image = {}};
}

StatusMenuEntry entry(const QString& title, StatusMenuAction action, bool isEnabled,
                      const QString& keyEquivalent = {}) {
    return {.title = title,
            .action = action,
            .keyEquivalent = keyEquivalent,
            .isEnabled = isEnabled,
            .image = {}};
}

} // namespace

StatusMenu statusMenu(const StatusMenuCapabilities& capabilities) {
    using enum StatusMenuAction;
    return {
        heading(QStringLiteral("Kestrova")),
        separator(),
        entry(QStringLiteral("클립보드 열기 / 닫기"), togglePanel, true),
        entry(QStringLiteral("영역 캡처"), captureArea, true),
        entry(QStringLiteral("전체 화면 캡처"), captureFullScreen, true),
        entry(QStringLiteral("윈도우 캡처"), captureWindow, true),
        separator(),
        entry(QStringLiteral("업데이트 확인…"), checkForUpdates, capabilities.updateCheck),
        entry(QStringLiteral("Changelog…"), openChangelog, capabilities.changelog),
        entry(launchAtLoginTitle(), toggleLaunchAtLogin, capabilities.launchAtLogin),
        entry(QStringLiteral("Settings…"), openSettings, capabilities.settings, QStringLiteral(",")),
        separator(),
        entry(QStringLiteral("Kestrova 종료"), terminate, true, QStringLiteral("q")),
    };
}

void menuNeedsUpdate(StatusMenu& menu, bool launchesAtLogin) {
    const auto found =
        std::ranges::find(menu, StatusMenuAction::toggleLaunchAtLogin, &StatusMenuEntry::action);
    if (found == menu.end())
        return;
    found->title = launchAtLoginTitle();
    found->image = launchesAtLogin
                       ? StatusMenuImage{QStringLiteral("checkmark.square.fill"), QStringLiteral("켬")}
                       : StatusMenuImage{QStringLiteral("square"), QStringLiteral("끔")};
}

} // namespace kestrova
