#include "Kestrova/StatusMenu.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestrova {
namespace {

constexpr StatusMenuCapabilities everything{
    .updateCheck = true, .changelog = true, .launchAtLogin = true, .settings = true};

std::vector<StatusMenuAction> enabledActions(const StatusMenuCapabilities& capabilities) {
    std::vector<StatusMenuAction> actions;
    for (const auto& entry : statusMenu(capabilities))
        if (entry.isEnabled && entry.action)
            actions.push_back(*entry.action);
    return actions;
}

const StatusMenuEntry& launchAtLogin(const StatusMenu& menu) {
    return *std::ranges::find(menu, StatusMenuAction::toggleLaunchAtLogin, &StatusMenuEntry::action);
}

TEST(StatusMenuTest, HasItsThirteenLinesInOrder) {
    using enum StatusMenuAction;
    struct Row {
        QString title;
        std::optional<StatusMenuAction> action;
        QString keyEquivalent;
    };
    const std::vector<Row> rows{
        {QStringLiteral("Kestrova"), {}, {}},
        {},
        {QStringLiteral("클립보드 열기 / 닫기"), togglePanel, {}},
        {QStringLiteral("영역 캡처"), captureArea, {}},
        {QStringLiteral("전체 화면 캡처"), captureFullScreen, {}},
        {QStringLiteral("윈도우 캡처"), captureWindow, {}},
        {},
        {QStringLiteral("업데이트 확인…"), checkForUpdates, {}},
        {QStringLiteral("Changelog…"), openChangelog, {}},
        {QStringLiteral("로그인 시 자동 실행"), toggleLaunchAtLogin, {}},
        {QStringLiteral("Settings…"), openSettings, QStringLiteral(",")},
        {},
        {QStringLiteral("Kestrova 종료"), terminate, QStringLiteral("q")},
    };
    const auto menu = statusMenu(everything);
    ASSERT_EQ(menu.size(), rows.size());
    for (std::size_t line = 0; line < rows.size(); ++line) {
        EXPECT_EQ(menu[line].title, rows[line].title) << line;
        EXPECT_EQ(menu[line].action, rows[line].action) << line;
        EXPECT_EQ(menu[line].keyEquivalent, rows[line].keyEquivalent) << line;
        EXPECT_EQ(menu[line].isSeparator(), rows[line].title.isEmpty()) << line;
        EXPECT_EQ(menu[line].isEnabled, rows[line].action.has_value()) << line;
        EXPECT_EQ(menu[line].image, std::nullopt) << line;
    }
}

TEST(StatusMenuTest, WithoutAnyOtherPartThePanelTheCapturesAndTheEndRemain) {
    using enum StatusMenuAction;
    EXPECT_EQ(enabledActions({}),
              (std::vector{togglePanel, captureArea, captureFullScreen, captureWindow, terminate}));
}

TEST(StatusMenuTest, EachPartEnablesItsOwnEntries) {
    using enum StatusMenuAction;
    const auto added = [](const StatusMenuCapabilities& capabilities) {
        auto actions = enabledActions(capabilities);
        for (const auto always : enabledActions({}))
            std::erase(actions, always);
        return actions;
    };
    EXPECT_EQ(added({.updateCheck = true}), std::vector{checkForUpdates});
    EXPECT_EQ(added({.changelog = true}), std::vector{openChangelog});
    EXPECT_EQ(added({.launchAtLogin = true}), std::vector{toggleLaunchAtLogin});
    EXPECT_EQ(added({.settings = true}), std::vector{openSettings});
}

TEST(StatusMenuTest, TheStateOfLaunchAtLoginIsAnImage) {
    auto menu = statusMenu(everything);
    menuNeedsUpdate(menu, true);
    EXPECT_EQ(launchAtLogin(menu).image,
              (StatusMenuImage{QStringLiteral("checkmark.square.fill"), QStringLiteral("켬")}));
    menuNeedsUpdate(menu, false);
    EXPECT_EQ(launchAtLogin(menu).image, (StatusMenuImage{QStringLiteral("square"), QStringLiteral("끔")}));
}

TEST(StatusMenuTest, AnUpdateWritesTheTitleAnewAndLeavesTheOtherEntries) {
    const auto before = statusMenu(everything);
    auto menu = before;
    menu[9].title = QStringLiteral("?");
    menuNeedsUpdate(menu, false);
    EXPECT_EQ(menu[9].title, u"로그인 시 자동 실행");
    menu[9].image.reset();
    EXPECT_EQ(menu, before);
}

TEST(StatusMenuTest, AMenuWithoutTheEntryStaysAsItIs) {
    StatusMenu menu;
    menuNeedsUpdate(menu, true);
    EXPECT_TRUE(menu.empty());
}

} // namespace
} // namespace kestrova
