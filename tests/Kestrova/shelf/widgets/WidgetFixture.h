#pragma once

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ItemListView.h"
#include "Kestrova/shelf/widgets/SearchField.h"
#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/FakeAppearance.h"
#include "tests/support/FakeEventMonitors.h"
#include "tests/support/FakeLinkPreviews.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/FakeWindowManagement.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/RecordingHUD.h"
#include "tests/support/RecordingSharing.h"
#include "tests/support/RecordingWorkspace.h"
#include "tests/support/StoreFixture.h"

#include <QBuffer>
#include <QTest>

#include <algorithm>
#include <chrono>

namespace kestrova {

/// A shelf with its real window, on a display that nobody sees.
class WidgetFixture : public StoreFixture {
protected:
    static constexpr std::chrono::seconds deadline{10};

    /// What programs that read to people are told.
    struct News {
        QAccessible::Event event;
        const QObject* object;
        int child;
        bool operator==(const News&) const = default;
    };

    WidgetFixture() { panel.setContent(view); }

    std::shared_ptr<ClipboardItem> add(const QString& content,
                                       ClipboardItemType type = ClipboardItemType::text, bool pinned = false,
                                       const std::optional<QByteArray>& imageData = {}) {
        const auto item = std::make_shared<ClipboardItem>(content, type, std::nullopt, moment(++m_clock),
                                                          pinned, ItemSource::clipboard);
        item->setImageData(imageData);
        m_elsewhere.insert(item);
        EXPECT_TRUE(m_elsewhere.save());
        return *std::ranges::find(view.items(), item->id(), &ClipboardItem::id);
    }

    std::shared_ptr<KovaCollection> addCollection(const QString& name) {
        m_elsewhere.insert(
            std::make_shared<KovaCollection>(name, ++m_lastSortOrder, std::nullopt, std::nullopt));
        EXPECT_TRUE(m_elsewhere.save());
        return view.allCollections().back();
    }

    void deleteElsewhere(ItemID id) {
        m_elsewhere.remove(*m_elsewhere.item(id));
        EXPECT_TRUE(m_elsewhere.save());
    }

    /// As the controller does.
    void show() {
        panel.setFrame({.x = 0, .y = 0, .width = 960, .height = 540});
        panel.orderFrontRegardless();
        panel.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));
        if (!std::exchange(m_hasAppeared, true))
            view.viewAppears();
        view.shelfPanelDidShow();
    }
    template<typename Condition>
    bool waitFor(Condition condition) {
        return QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(deadline).count()));
    }

    template<typename Widget>
    Widget& part() {
        auto* const found = findPart<Widget>(panel);
        if (!found)
            qFatal("The panel has no such part.");
        return *found;
    }
    SearchLineEdit& field() { return part<SearchLineEdit>(); }
    ItemListView& list() { return part<ItemListView>(); }
    QPoint centreOfRow(int row) { return list().visualRect(list().model()->index(row, 0)).center(); }
    static QByteArray png(QSize size, const QColor& color) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        QBuffer buffer;
        EXPECT_TRUE(image.save(&buffer, "PNG"));
        return buffer.data();
    }

    QtMainQueue queue;
    FakePasteboard pasteboard;
    InMemoryUserDefaults defaults;
    FakeEventMonitors monitors;
    RecordingHUD hud;
    FakeWindowManagement windowManagement;
    FakeAppearance appearance;
    RecordingWorkspace workspace;
    RecordingSharing sharing;
    FakeLinkPreviews linkPreviews{queue};
    FakeScreens screens;
    int dismissals = 0;
    int stepsAside = 0;
    std::vector<News> news;
    ShelfPanelWidget panel{{.mainQueue = queue,
                            .windowManagement = windowManagement,
                            .appearance = appearance,
                            .toolkitRect = &FakeScreens::toolkitRect,
                            .screenRect = &FakeScreens::screenRect,
                            .tellReaders = [this](const QAccessibleEvent* event) {
                                news.push_back({event->type(), event->object(), event->child()});
                            }}};
    ShelfPanelView view{{*m_container, queue, pasteboard, defaults, monitors, hud, panel, workspace, sharing,
                         screens, linkPreviews},
                        {.onSelect = [](const auto&) {},
                         .onDismiss = [this] { ++dismissals; },
                         .onEditImage = [](const auto&) {},
                         .onPanelWidthChange = [](double) {},
                         .onStepAside = [this] { ++stepsAside; }}};

private:
    // The toolkit's own search needs classes that its code generator has seen.
    template<typename Widget>
    static Widget* findPart(const QWidget& parent) {
        for (auto* const child : parent.findChildren<QWidget*>())
            if (auto* const found = dynamic_cast<Widget*>(child))
                return found;
        return nullptr;
    }

    ModelContext m_elsewhere{*m_container};
    int m_clock = 0;
    std::int64_t m_lastSortOrder = 0;
    bool m_hasAppeared = false;
};

} // namespace kestrova
