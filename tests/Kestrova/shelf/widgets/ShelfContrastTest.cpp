#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "Kestrova/look/Contrast.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/controls/LabelButton.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "Kestrova/shelf/widgets/CollectionSheetView.h"
#include "Kestrova/shelf/widgets/DetailOverlay.h"
#include "Kestrova/shelf/widgets/FilterChip.h"
#include "Kestrova/shelf/widgets/HintBar.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "Kestrova/shelf/widgets/PreviewPane.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "tests/Kestrova/shelf/widgets/DrawnTexts.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>
#include <QHash>
#include <QPainter>

#include <functional>

namespace kestrova {
namespace {

struct Surroundings {
    const char* theme;
    Qt::GlobalColor desktop;
};

/// Measures what is on the screen: the shelf blended with the desktop behind it.
class ShelfContrastTest : public WidgetFixture, public testing::WithParamInterface<Surroundings> {
protected:
    // Strokes so wide that some of their pixels have the full colour.
    static constexpr int scale = 3;
    static constexpr double ofText = 4.5;
    static constexpr double ofSymbol = 3;

    ShelfContrastTest() {
        defaults.set(QStringLiteral("themePreference"), QString::fromLatin1(GetParam().theme));
        add(u"https://a.org"_qs, ClipboardItemType::url);
        add(u"a"_qs);
        add(u"words"_qs, ClipboardItemType::text, true);
        add(u"/home/user/file.pdf"_qs, ClipboardItemType::file);
        for (const auto* const color : {"#808080", "#000000", "#FFFFFF"})
            add(QString::fromLatin1(color), ClipboardItemType::color);
        for (const auto* const color : {"#FFFF00", "#101010", "#FFFFFF"}) {
            ModelContext elsewhere(*m_container);
            elsewhere.insert(std::make_shared<KovaCollection>(QString::fromLatin1(color), ++m_lastSortOrder,
                                                              std::nullopt, QString::fromLatin1(color)));
            EXPECT_TRUE(elsewhere.save());
        }
        show();
    }

    QImage picture() { return pictureOf(part<ShelfContent>()); }
    QImage pictureOf(QWidget& window) {
        QImage drawn(window.size() * scale, QImage::Format_ARGB32_Premultiplied);
        drawn.setDevicePixelRatio(scale);
        drawn.fill(Qt::transparent);
        window.QWidget::render(&drawn, {}, {}, QWidget::DrawChildren | QWidget::DrawWindowBackground);
        QImage seen(drawn.size(), QImage::Format_RGB32);
        seen.setDevicePixelRatio(scale);
        seen.fill(GetParam().desktop);
        QPainter(&seen).drawImage(QPoint(), drawn);
        return seen;
    }

    /// Of what stands out most, against the colour of which there is most.
    static double strongestContrast(const QImage& picture, const QRectF& points) {
        QHash<QRgb, int> counts;
        const auto pixels = QRectF(points.topLeft() * scale, points.size() * scale).toRect() & picture.rect();
        for (int y = pixels.top(); y <= pixels.bottom(); ++y)
            for (int x = pixels.left(); x <= pixels.right(); ++x)
                ++counts[picture.pixel(x, y)];
        if (counts.isEmpty())
            return 1;
        const auto ground = std::max_element(counts.cbegin(), counts.cend()).key();
        double strongest = 1;
        for (auto count = counts.cbegin(); count != counts.cend(); ++count)
            strongest = std::max(strongest, contrast(QColor(count.key()), QColor(ground)));
        return strongest;
    }

    /// What is hidden comes to rest at once.
    void finishTransitions() {
        panel.orderOut();
        panel.orderFrontRegardless();
    }

    template<typename Widget>
    void expectSeen(double least, const char* what) {
        const auto seen = picture();
        auto& content = part<ShelfContent>();
        int count = 0;
        for (auto* const child : panel.findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(child); widget && widget->isVisible()) {
                ++count;
                EXPECT_GE(strongestContrast(seen, {widget->mapTo(&content, QPoint()), widget->size()}), least)
                    << what << " " << count;
            }
        EXPECT_GT(count, 0) << what;
    }
    /// A colour that was copied is written in that very colour, however faint, so that it can be told from
    /// its neighbours; the swatch beside it and the larger one in the preview do not depend on it. It is what
    /// is shown, not how.
    bool isWrittenInItsOwnColour(const QString& text) const {
        return std::ranges::any_of(view.filteredItems(), [&](const auto& item) {
            return item->content() == text && ItemRow::of(*item, 0).primaryColor;
        });
    }
    /// Each piece of text that `part` of the window draws. Answers what it read.
    QStringList expectReadable(QWidget& window, QWidget& part) {
        return expectReadable(window, part,
                              [this](const QString& text) { return !isWrittenInItsOwnColour(text); });
    }
    /// With the texts of copied colours too: nothing but the lists writes them in those colours.
    QStringList expectAllReadable(QWidget& part) {
        return expectReadable(ShelfContrastTest::part<ShelfContent>(), part,
                              [](const QString&) { return true; });
    }
    QStringList expectReadable(QWidget& window, QWidget& part,
                               const std::function<bool(const QString&)>& isMeasured) {
        const auto seen = pictureOf(window);
        const auto corner = QPointF(part.mapTo(&window, QPoint()));
        QStringList read;
        for (const auto& [text, frame] : DrawnTexts::of(part)) {
            if (!isMeasured(text))
                continue;
            EXPECT_GE(strongestContrast(seen, frame.translated(corner)), ofText) << qPrintable(text);
            read.append(text);
        }
        return read;
    }
    /// One item of each kind that a detail screen shows in its own way, the odd ones too.
    std::vector<std::shared_ptr<ClipboardItem>> itemsOfEveryKind() {
        linkPreviews.known[QUrl(u"https://b.org/page"_qs)] = {
            .title = u"Title"_qs, .siteName = u"Site"_qs, .image = {}, .favicon = {}};
        return {add(u"words of a text"_qs),
                add(u"formatted words"_qs, ClipboardItemType::rtf),
                add(u"https://b.org/page"_qs, ClipboardItemType::url),
                add(u"https://c.org"_qs, ClipboardItemType::url),
                add(u"/home/user/paper.pdf"_qs, ClipboardItemType::file),
                add(QString(), ClipboardItemType::image, false, png({600, 400}, Qt::gray)),
                add(QString(), ClipboardItemType::image, false, "no picture"),
                add(u"#3B82F6"_qs, ClipboardItemType::color),
                add(u"#FF3B3066"_qs, ClipboardItemType::color),
                add(u"rgb(1, 2)"_qs, ClipboardItemType::color)};
    }
    static void expectAmong(const QStringList& read, const QStringList& texts) {
        for (const auto& text : texts)
            EXPECT_TRUE(read.contains(text)) << qPrintable(text) << qPrintable(read.join(u'|'));
    }
    QStringList expectReadable(QWidget& window) { return expectReadable(window, window); }
    PanelMenu& openMenu(QWidget& widget, QPoint place) {
        QContextMenuEvent request(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
        QCoreApplication::sendEvent(&widget, &request);
        auto* const menu = dynamic_cast<PanelMenu*>(QApplication::activePopupWidget());
        if (!menu)
            qFatal("No menu is open.");
        return *menu;
    }
    /// With each line highlighted in turn, and with none.
    QStringList expectMenuReadable(PanelMenu& menu) {
        auto read = expectReadable(menu);
        for (auto* const line : menu.actions()) {
            if (line->isSeparator() || !line->isEnabled())
                continue;
            menu.setActiveAction(line);
            EXPECT_EQ(expectReadable(menu), read);
        }
        return read;
    }
    /// The left part of each row alone.
    void expectSidebarSymbolsSeen() {
        const auto seen = picture();
        auto& content = part<ShelfContent>();
        for (auto* const child : panel.findChildren<QWidget*>())
            if (auto* const row = dynamic_cast<SidebarRow*>(child)) {
                constexpr QRect symbol(22, 7, 20, 18);
                EXPECT_GE(strongestContrast(seen, symbol.translated(row->mapTo(&content, QPoint()))),
                          ofSymbol)
                    << qPrintable(row->accessibleName());
            }
    }

private:
    int m_lastSortOrder = 0;
};

TEST_P(ShelfContrastTest, EveryPartCanBeSeen) {
    expectSeen<SidebarRow>(ofText, "sidebar row");
    expectSeen<LabelButton>(ofText, "button");
    expectSeen<FilterChip>(ofSymbol, "chip");
    expectSeen<SymbolButton>(ofSymbol, "symbol");
    expectSeen<HintBar>(ofText, "hints");
    expectSidebarSymbolsSeen();
}

TEST_P(ShelfContrastTest, SymbolsOfWhatIsOffCanBeSeen) {
    view.perform([&] { view._previewVisible = false; });
    view.perform([&] { view._sidebarVisible = false; });
    expectSeen<SymbolButton>(ofSymbol, "symbol");
}

TEST_P(ShelfContrastTest, KeysCanBeReadWhileModifiersAreHeld) {
    view.perform([&] { view._optionHeld = view._commandHeld = view._controlHeld = true; });
    const auto shown = [&] {
        const auto seen = picture();
        const auto& chip = part<FilterChip>();
        return strongestContrast(seen, {chip.mapTo(&part<ShelfContent>(), QPoint()), chip.size()}) >= ofText;
    };
    EXPECT_TRUE(waitFor(shown));
    expectSeen<FilterChip>(ofText, "chip");
    expectSeen<SidebarRow>(ofText, "sidebar row");
}

TEST_P(ShelfContrastTest, EveryTextOfTheListCanBeRead) {
    const auto last = view.filteredItems().back()->id();
    view.perform([&] { view._hoveredItem = last; });
    finishTransitions();
    const auto read = expectReadable(part<ShelfContent>());
    for (const auto& text : {u"컬렉션"_qs, u"전체"_qs, u"Pinned"_qs, u"새 컬렉션"_qs, u"All"_qs, u"검색…"_qs,
                             u"https://a.org"_qs, u"복사"_qs, u"1"_qs})
        EXPECT_TRUE(read.contains(text)) << qPrintable(text) << qPrintable(read.join(u' '));
}

TEST_P(ShelfContrastTest, EveryTextOfTheSelectedRowCanBeRead) {
    for (const auto& item : view.filteredItems()) {
        view.perform([&] { view._selection = view._hoveredItem = item->id(); });
        expectReadable(part<ShelfContent>(), list());
    }
}

TEST_P(ShelfContrastTest, EveryTextOfTheSidebarCanBeReadWhicheverRowIsSelected) {
    for (const auto lane : {KeyboardLane::sidebar, KeyboardLane::list})
        for (std::ptrdiff_t row = 0; row < 6; ++row) {
            view.perform([&] {
                view.selectSidebarRow(row);
                view._lane = lane;
            });
            EXPECT_GE(expectReadable(part<ShelfContent>(), part<Sidebar>()).size(), 2 + 2 * 6 + 1);
        }
}

TEST_P(ShelfContrastTest, EveryTextOfTheGridCanBeRead) {
    view.perform([&] {
        view._viewMode = ShelfViewMode::grid;
        view._previewVisible = false;
    });
    finishTransitions();
    for (const auto& item : view.filteredItems()) {
        view.perform([&] { view._selection = view._hoveredItem = item->id(); });
        const auto read = expectReadable(part<ShelfContent>(), part<ItemGridView>());
        EXPECT_TRUE(read.contains(u"a.org"_qs)) << qPrintable(read.join(u'|'));
    }
}

TEST_P(ShelfContrastTest, EveryTextThatTellsOfNothingCanBeRead) {
    view.perform([&] { view._query = u"없는 말"_qs; });
    finishTransitions();
    auto read = expectReadable(part<ShelfContent>());
    EXPECT_TRUE(read.contains(u"아직 카피된 게 없어요"_qs)) << qPrintable(read.join(u'|'));
    view.perform([&] { view._viewMode = ShelfViewMode::grid; });
    read = expectReadable(part<ShelfContent>());
    EXPECT_TRUE(read.contains(u"아직 컬렉션 항목이 없어요"_qs)) << qPrintable(read.join(u'|'));
    EXPECT_TRUE(read.contains(u"항목을 선택하면 미리보기가 보여요"_qs)) << qPrintable(read.join(u'|'));
}

TEST_P(ShelfContrastTest, EveryKeyCanBeRead) {
    struct Held {
        bool option;
        bool command;
        bool control;
        QString key;
    };
    for (const auto& [option, command, control, key] :
         {Held{true, false, false, u"6"_qs}, Held{true, true, false, u"S"_qs},
          Held{false, false, true, u"3"_qs}, Held{false, true, false, u"K"_qs}}) {
        view.perform([&] {
            view._optionHeld = option;
            view._commandHeld = command;
            view._controlHeld = control;
        });
        finishTransitions();
        EXPECT_TRUE(expectReadable(part<ShelfContent>()).contains(key)) << qPrintable(key);
    }
}

TEST_P(ShelfContrastTest, EveryTextOfThePreviewPaneCanBeRead) {
    QStringList read;
    for (const auto& item : itemsOfEveryKind()) {
        view.perform([&] { view._selection = item->id(); });
        finishTransitions();
        read += expectAllReadable(part<PreviewPane>());
    }
    expectAmong(read,
                {u"Information"_qs, u"Content Type"_qs, u"Length"_qs, u"Host"_qs, u"Path"_qs, u"Copied"_qs,
                 u"words of a text"_qs, u"Title"_qs, u"Site"_qs, u"https://c.org"_qs, u"paper.pdf"_qs,
                 u"HEX"_qs, u"#3B82F6"_qs, u"rgba(255, 59, 48, 0.40)"_qs, u"rgb(1, 2)"_qs, u"복사"_qs});
}

TEST_P(ShelfContrastTest, EveryTextOfThePreviewScreenCanBeRead) {
    QStringList read;
    for (const auto& item : itemsOfEveryKind()) {
        view.perform([&] { view._route = DetailRoute::preview(item); });
        finishTransitions();
        read += expectAllReadable(part<DetailOverlay>());
    }
    expectAmong(read, {u"Close"_qs, u"Esc"_qs, u"Text"_qs, u"Link"_qs, u"File"_qs, u"Image"_qs, u"Color"_qs,
                       u"words of a text"_qs, u"Title"_qs, u"paper.pdf"_qs, u"#3B82F6"_qs});
}

TEST_P(ShelfContrastTest, APictureThatCannotBeReadIsToldOfReadably) {
    const auto item = add(QString(), ClipboardItemType::image, false, "no picture");
    view.perform([&] { view._route = DetailRoute::preview(item); });
    finishTransitions();
    EXPECT_TRUE(waitFor([&] {
        return std::ranges::any_of(DrawnTexts::of(part<DetailOverlay>()), [](const auto& drawn) {
            return drawn.text == u"이미지를 읽을 수 없어요";
        });
    }));
    expectAllReadable(part<DetailOverlay>());
}

TEST_P(ShelfContrastTest, EveryTextOfTheEditScreenCanBeRead) {
    QStringList read;
    for (const auto& item : itemsOfEveryKind()) {
        if (!ShelfPanelView::isEditable(*item) || item->type() == ClipboardItemType::image)
            continue;
        view.perform([&] { view._route = DetailRoute::edit(item); });
        finishTransitions();
        read += expectAllReadable(part<DetailOverlay>());
    }
    expectAmong(read, {u"Edit Text"_qs, u"Edit Link"_qs, u"Edit Color"_qs, u"취소"_qs, u"저장"_qs, u"Esc"_qs,
                       u"S"_qs, u"words of a text"_qs, u"#3B82F6"_qs});
}

TEST_P(ShelfContrastTest, EveryTextOfTheCollectionSheetCanBeRead) {
    QStringList read;
    for (const auto& mode : {CollectionEditSheet::Mode::create(),
                             CollectionEditSheet::Mode::edit(view.allCollections().front())}) {
        view.perform([&] { view.presentCollectionSheet(mode); });
        finishTransitions();
        read += expectAllReadable(part<CollectionSheetView>());
    }
    expectAmong(read, {u"새 컬렉션"_qs, u"컬렉션 편집"_qs, u"이름"_qs, u"예: 자주 쓰는 코드"_qs, u"색"_qs,
                       u"취소"_qs, u"만들기"_qs, u"저장"_qs, u"컬렉션"_qs});
}

TEST_P(ShelfContrastTest, ThatThereAreNoCollectionsCanBeReadOnTheCard) {
    view.perform([&] { view._route = DetailRoute::actions(view.filteredItems().front()); });
    finishTransitions();
    auto& card = part<ItemActionsCardWidget>().card();
    card.collectionsChanged({}, {});
    card.perform([&] { card.go(CardScreen::collections); });
    expectAmong(expectAllReadable(part<ItemActionsCardWidget>()), {u"뒤로"_qs, u"컬렉션 없음"_qs});
}

TEST_P(ShelfContrastTest, EachRowOfTheCardCanBeReadWhileItIsLitUp) {
    view.perform([&] { view._route = DetailRoute::actions(view.filteredItems().front()); });
    finishTransitions();
    auto& card = part<ItemActionsCardWidget>().card();
    for (const auto screen : {CardScreen::root, CardScreen::collections}) {
        card.perform([&] { card.go(screen); });
        for (std::ptrdiff_t row = 0; row < std::ssize(card.rows()); ++row) {
            card.perform([&] { card.selectedIndex = row; });
            const auto label = card.rows()[static_cast<std::size_t>(row)].label;
            expectAmong(expectAllReadable(part<ItemActionsCardWidget>()), {label});
        }
    }
}

TEST_P(ShelfContrastTest, EveryTextOfTheMenusCanBeRead) {
    for (const bool isCompositing : {true, false}) {
        windowManagement.compositing = isCompositing;
        panel.orderOut();
        show();
        auto& ofItem = openMenu(*list().viewport(), centreOfRow(1));
        const auto read = expectMenuReadable(ofItem);
        for (const auto& text : {u"Paste"_qs, u"⌘"_qs, u"Share..."_qs, u"Delete"_qs})
            EXPECT_TRUE(read.join(u'|').contains(text)) << qPrintable(text) << qPrintable(read.join(u'|'));
        for (auto* const line : ofItem.actions())
            if (auto* const submenu = dynamic_cast<PanelMenu*>(line->menu())) {
                submenu->popUp({});
                EXPECT_GE(expectMenuReadable(*submenu).size(), 3);
            }
        ofItem.close();
        panel.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));
        panel.pickShareTarget({}, [](const auto&) {});
        EXPECT_FALSE(expectReadable(*QApplication::activePopupWidget()).isEmpty());
        QApplication::activePopupWidget()->close();
    }
}

INSTANTIATE_TEST_SUITE_P(Surroundings, ShelfContrastTest,
                         testing::Values(Surroundings{"light", Qt::white}, Surroundings{"light", Qt::black},
                                         Surroundings{"dark", Qt::white}, Surroundings{"dark", Qt::black}),
                         [](const auto& of) {
                             return std::string(of.param.theme) +
                                    (of.param.desktop == Qt::white ? "OverWhite" : "OverBlack");
                         });

} // namespace
} // namespace kestrova
