#pragma once

#include "Kestrova/shelf/ShelfKeyboard.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "tests/support/FakeEventMonitors.h"
#include "tests/support/FakeLinkPreviews.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/FakeShelfPanel.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/RecordingHUD.h"
#include "tests/support/RecordingSharing.h"
#include "tests/support/RecordingWorkspace.h"
#include "tests/support/StoreFixture.h"

#include <algorithm>

namespace kestrova {

/// A shelf on fakes, with an empty history. Each row that a test adds is newer than the one before.
class ShelfFixture : public StoreFixture {
protected:
    struct Row {
        ClipboardItemType type = ClipboardItemType::text;
        bool pinned = false;
        ItemSource source = ItemSource::clipboard;
        std::optional<QString> ocrText = {};
        std::optional<QByteArray> imageData = {};
        /// After the fixture's moment; absent: newer than all rows so far.
        std::optional<int> seconds = {};
    };

    /// A row that another part of the program saves. The result is the shelf's own handle.
    std::shared_ptr<ClipboardItem> add(const QString& content, const Row& row) {
        const auto item = std::make_shared<ClipboardItem>(
            content, row.type, std::nullopt, moment(row.seconds.value_or(++m_clock)), row.pinned, row.source);
        item->setOcrText(row.ocrText);
        item->setImageData(row.imageData);
        m_elsewhere.insert(item);
        EXPECT_TRUE(m_elsewhere.save());
        return *std::ranges::find(view.items(), item->id(), &ClipboardItem::id);
    }
    std::shared_ptr<ClipboardItem> add(const QString& content) { return add(content, Row{}); }
    /// Rows with one letter each, of which the last is the newest.
    void addLetters(const QString& letters) {
        for (const auto letter : letters)
            add(letter);
    }
    /// One row of each type that has a chip.
    void addOneOfEachType() {
        for (const auto type : {ClipboardItemType::text, ClipboardItemType::url, ClipboardItemType::image,
                                ClipboardItemType::file, ClipboardItemType::color})
            add(rawText(type).toString(), {.type = type});
    }
    std::shared_ptr<KovaCollection> addCollection(const QString& name) {
        const auto collection =
            std::make_shared<KovaCollection>(name, ++m_lastSortOrder, std::nullopt, std::nullopt);
        m_elsewhere.insert(collection);
        EXPECT_TRUE(m_elsewhere.save());
        return view.allCollections().back();
    }
    void put(const std::shared_ptr<ClipboardItem>& item, const std::shared_ptr<KovaCollection>& collection) {
        act([&] { view.addToCollection(*item, collection); });
    }
    void deleteElsewhere(ItemID id) {
        m_elsewhere.remove(*m_elsewhere.item(id));
        EXPECT_TRUE(m_elsewhere.save());
    }
    void deleteElsewhere(CollectionID id) {
        m_elsewhere.remove(*m_elsewhere.collection(id));
        EXPECT_TRUE(m_elsewhere.save());
    }

    template<typename Handler>
    void act(Handler&& handler) {
        view.perform(std::forward<Handler>(handler));
    }
    void type(const QString& query) {
        act([&] { view._query = query; });
    }
    void chip(std::optional<ClipboardItemType> filter) {
        act([&] { view._typeFilter = filter; });
    }
    void lens(const CollectionFilter& filter) {
        act([&] { view._collectionFilter = filter; });
    }
    void lane(KeyboardLane lane) {
        act([&] { view._lane = lane; });
    }
    void selectItem(std::optional<ItemID> id) {
        act([&] { view._selection = id; });
    }
    void selectIndex(std::size_t index) { selectItem(view.filteredItems()[index]->id()); }
    void hideSidebar() {
        act([&] { view._sidebarVisible = false; });
    }
    void useGrid() {
        act([&] { view._viewMode = ShelfViewMode::grid; });
    }

    static QStringList contents(const ShelfPanelView::Items& items) {
        QStringList contents;
        for (const auto& item : items)
            contents.append(item->content());
        return contents;
    }
    QStringList shown() const { return contents(view.filteredItems()); }
    QString selected() const {
        const auto index = view.indexInFilteredItems(view._selection);
        return index ? view.filteredItems()[*index]->content() : QString();
    }
    std::optional<ItemID> firstShown() const {
        const auto& items = view.filteredItems();
        return items.empty() ? std::nullopt : std::optional{items.front()->id()};
    }

    int endedEditing() const { return static_cast<int>(std::ranges::count(panel.calls, "endEditing")); }

    ManualMainQueue queue;
    FakePasteboard pasteboard;
    InMemoryUserDefaults defaults;
    FakeEventMonitors monitors;
    RecordingHUD hud;
    FakeShelfPanel panel;
    RecordingWorkspace workspace;
    RecordingSharing sharing;
    FakeLinkPreviews linkPreviews{queue};
    FakeScreens screens;

    QStringList pasted;
    int dismissals = 0;
    int stepsAside = 0;
    QStringList imagesToEdit;
    std::vector<double> widths;

    ShelfPanelView view{{*m_container, queue, pasteboard, defaults, monitors, hud, panel, workspace, sharing,
                         screens, linkPreviews},
                        {.onSelect = [this](const auto& item) { pasted.append(item->content()); },
                         .onDismiss = [this] { ++dismissals; },
                         .onEditImage = [this](const auto& item) { imagesToEdit.append(item->content()); },
                         .onPanelWidthChange = [this](double width) { widths.push_back(width); },
                         .onStepAside = [this] { ++stepsAside; }}};

private:
    ModelContext m_elsewhere{*m_container};
    int m_clock = 0;
    std::int64_t m_lastSortOrder = 0;
};

/// The same, with keys.
class ShelfKeyboardFixture : public ShelfFixture {
protected:
    // An arrow carries bits of its own.
    static constexpr std::uint32_t arrowFlags = ModifierFlags::function | ModifierFlags::numericPad;

    bool press(std::uint16_t keyCode, std::uint32_t flags = 0, const QString& characters = {},
               bool isRepeat = false) {
        return keyboard.handleKey({keyCode, flags, characters, isRepeat});
    }
    bool up() { return press(VirtualKey::upArrow, arrowFlags); }
    bool down() { return press(VirtualKey::downArrow, arrowFlags); }
    bool left() { return press(VirtualKey::leftArrow, arrowFlags); }
    bool right() { return press(VirtualKey::rightArrow, arrowFlags); }
    bool enter() { return press(VirtualKey::returnKey); }
    bool space() { return press(VirtualKey::space); }
    bool escape() { return press(VirtualKey::escape); }
    bool command(std::uint16_t keyCode) { return press(keyCode, ModifierFlags::command); }
    bool digit(const QString& character, std::uint32_t flags, bool isRepeat = false) {
        // The position of the key says nothing of the digit.
        constexpr std::uint16_t someKey = 18;
        return press(someKey, flags, character, isRepeat);
    }

    ShelfKeyboard keyboard{view};
};

} // namespace kestrova
