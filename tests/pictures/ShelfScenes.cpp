#include "tests/pictures/ShelfScenes.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

QByteArray screenshot(QSize size, const QColor& from, const QColor& to) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, from);
    gradient.setColorAt(1, to);
    painter.fillRect(image.rect(), gradient);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 220));
    painter.drawRoundedRect(
        image.rect().adjusted(size.width() / 8, size.height() / 8, -size.width() / 8, -size.height() / 8), 24,
        24);
    painter.end();
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}

struct Row {
    QString content;
    ClipboardItemType type = ClipboardItemType::text;
    bool pinned = false;
};

std::vector<Row> rows() {
    using Type = ClipboardItemType;
    return {
        {u"내일 오후 세 시에 회의실에서 뵙겠습니다. 자료는 미리 공유해 주세요."_qs, Type::text, true},
        {u"The quick brown fox jumps over the lazy dog, again and again, until the line ends."_qs},
        {u"https://example.org/guides/clipboard?lang=ko#정리"_qs, Type::url},
        {u"#3b82f6"_qs, Type::color},
        {u"/home/user/문서/2026년 예산 보고서.pdf"_qs, Type::file},
        {u"for (const auto& item : items)\n    item->show();"_qs},
        {u"#111111"_qs, Type::color},
        {u"rgb(52, 199, 89)"_qs, Type::color, true},
        {u"ssh-keygen -t ed25519 -C \"someone@example.org\""_qs},
        {u"한글과 English가 섞인 문장, 그리고 숫자 1234567890"_qs, Type::rtf},
        {u"rgb(1, 2)"_qs, Type::color},
        {u"\n\n"_qs},
        {u"/usr/share/applications/"_qs, Type::file},
        {u"http://localhost:8080/"_qs, Type::url},
        {u"👩‍💻 이모지도 보입니다 🎉"_qs},
        {u"서울특별시 중구 세종대로 110"_qs},
        {u"마지막 줄입니다"_qs},
    };
}

std::shared_ptr<ClipboardItem> find(const ShelfPanelView& view, ClipboardItemType type) {
    for (const auto& item : view.items())
        if (item->type() == type)
            return item;
    return nullptr;
}

void select(ShelfPanelView& view, ClipboardItemType type) {
    view.perform([&] {
        view._selection = find(view, type)->id();
        view._lane = KeyboardLane::list;
        view._searchFocused = false;
    });
}

} // namespace

void fillWithEveryKind(ModelContainer& container) {
    ModelContext context(container);
    const auto work = std::make_shared<KovaCollection>(u"업무"_qs, 1, std::nullopt, u"#FF9F0A"_qs);
    const auto code = std::make_shared<KovaCollection>(u"Code snippets"_qs, 2, std::nullopt, u"#30D158"_qs);
    const auto plain = std::make_shared<KovaCollection>(u"나중에 읽을 아주 긴 이름의 모음집"_qs, 3,
                                                        std::nullopt, std::nullopt);
    for (const auto& collection : {work, code, plain})
        context.insert(collection);
    auto time = Timestamp{std::chrono::seconds{1'700'000'000}};
    const auto all = rows();
    for (auto row = all.rbegin(); row != all.rend(); ++row) {
        const auto item = std::make_shared<ClipboardItem>(row->content, row->type, std::nullopt,
                                                          time += std::chrono::seconds{1}, row->pinned,
                                                          ItemSource::clipboard);
        context.insert(item);
        if (row->pinned)
            item->setCollections({{work}});
        if (row->content.contains(u'('))
            item->setCollections({{code}});
    }
    for (const auto& [size, from, to] :
         {std::tuple(QSize(1280, 800), QColor(94, 92, 230), QColor(255, 55, 95)),
          std::tuple(QSize(600, 900), QColor(50, 173, 230), QColor(48, 209, 88))}) {
        const auto picture =
            std::make_shared<ClipboardItem>(QString(), ClipboardItemType::image, std::nullopt,
                                            time += std::chrono::seconds{1}, false, ItemSource::screenshot);
        picture->setImageData(screenshot(size, from, to));
        picture->setWidth(size.width());
        picture->setHeight(size.height());
        context.insert(picture);
    }
    if (!context.save())
        qFatal("The rows of the pictures cannot be saved.");
}

std::vector<ShelfScene> shelfScenes() {
    using Type = ClipboardItemType;
    return {
        {u"search"_qs,
         [](ShelfPanelView& view) {
             select(view, Type::text);
             view.perform([&] { view._searchFocused = true; });
         }},
        {u"found"_qs, [](ShelfPanelView& view) { view.perform([&] { view._query = u"한글"_qs; }); }},
        {u"nothing-found"_qs,
         [](ShelfPanelView& view) { view.perform([&] { view._query = u"없는 말"_qs; }); }},
        {u"picture"_qs, [](ShelfPanelView& view) { select(view, Type::image); }},
        {u"colour"_qs, [](ShelfPanelView& view) { select(view, Type::color); }},
        {u"tags-lane"_qs,
         [](ShelfPanelView& view) {
             view.perform([&] {
                 view._lane = KeyboardLane::tags;
                 view._searchFocused = false;
                 view._activeTagIndex = 2;
                 view._typeFilter = Type::url;
             });
             view.perform([&] { view._activeTagIndex = 2; });
         }},
        {u"sidebar-lane"_qs,
         [](ShelfPanelView& view) {
             view.perform([&] { view.selectSidebarRow(3); });
             view.perform([&] {
                 view._lane = KeyboardLane::sidebar;
                 view._hoveredItem = view.filteredItems().back()->id();
             });
         }},
        {u"keys-held"_qs,
         [](ShelfPanelView& view) {
             select(view, Type::url);
             view.perform([&] { view._optionHeld = view._commandHeld = view._controlHeld = true; });
         }},
        {u"without-sidebar"_qs,
         [](ShelfPanelView& view) { view.perform([&] { view._sidebarVisible = false; }); }},
        {u"without-preview"_qs,
         [](ShelfPanelView& view) { view.perform([&] { view._previewVisible = false; }); }},
        {u"actions"_qs,
         [](ShelfPanelView& view) {
             view.perform([&] { view._route = DetailRoute::actions(find(view, Type::text)); });
         }},
        {u"edit"_qs, [](ShelfPanelView& view) { view.perform([&] { view.edit(find(view, Type::text)); }); }},
        {u"preview"_qs,
         [](ShelfPanelView& view) { view.perform([&] { view.preview(find(view, Type::image)); }); }},
    };
}

} // namespace kestrova
