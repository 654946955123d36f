#include "tests/pictures/DetailHistory.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/ModelContext.h"
#include "tests/pictures/SampleWorkspace.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>

#include <functional>
#include <memory>
#include <vector>

namespace kestrova {
namespace {

using Type = ClipboardItemType;

struct Row {
    QString name;
    Type type;
    QString content;
    std::function<void(ClipboardItem&)> prepare = {};
};

QImage picture(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, QColor(94, 92, 230));
    gradient.setColorAt(1, QColor(255, 159, 10));
    painter.fillRect(image.rect(), gradient);
    return image;
}

QByteArray png(QSize size) {
    QBuffer buffer;
    picture(size).save(&buffer, "PNG");
    return buffer.data();
}

QString previewedPage() {
    return u"https://example.org/articles/2026/clipboard?lang=ko"_qs;
}
QString plainPage() {
    return u"https://www.example.com/"_qs;
}

QString longAddress() {
    return u"https://example.org/"_qs + u"a-very-long-path/"_qs.repeated(60) +
           u"?query=%ED%95%9C%EA%B8%80"_qs;
}

std::vector<Row> rows() {
    const auto pictureOf = [](QSize size) {
        return [size](ClipboardItem& item) { item.setImageData(png(size)); };
    };
    const auto fromEditor = [](ClipboardItem& item) { item.setSourceApp(SampleWorkspace::editor); };
    return {
        {u"text"_qs, Type::text, u"내일 오후 세 시에 회의실에서 뵙겠습니다.\nSee you at three."_qs,
         fromEditor},
        {u"text-long"_qs, Type::text,
         u"The quick brown fox jumps over the lazy dog. 다람쥐 헌 쳇바퀴에 타고파.\n"_qs.repeated(400),
         [](ClipboardItem& item) { item.setSourceApp(u"org.example.application-that-is-gone"_qs); }},
        {u"text-huge"_qs, Type::text, u"한 줄이 끝나지 않는 글 "_qs.repeated(300'000)},
        {u"image"_qs,
         Type::image,
         {},
         [fromEditor](ClipboardItem& item) {
             item.setWidth(1920);
             item.setHeight(1080);
             item.setImageData(png({1920, 1080}));
             fromEditor(item);
         }},
        {u"image-tall"_qs, Type::image, {}, pictureOf({300, 9000})},
        {u"image-large"_qs, Type::image, {}, pictureOf({5000, 4000})},
        {u"image-small"_qs, Type::image, {}, pictureOf({48, 32})},
        {u"image-broken"_qs,
         Type::image,
         {},
         [](ClipboardItem& item) {
             item.setWidth(1920);
             item.setHeight(1080);
             item.setImageData("no picture");
         }},
        {u"image-absent"_qs, Type::image, {}},
        {u"file"_qs, Type::file, u"/home/user/문서/2026년 예산 보고서.pdf"_qs,
         [fromEditor](ClipboardItem& item) {
             item.setFileSize(1'234'567);
             fromEditor(item);
         }},
        {u"file-long"_qs, Type::file,
         u"/home/user/"_qs + u"deep folder/"_qs.repeated(30) + u"이름이 아주 아주 긴 파일 "_qs.repeated(16) +
             u".pdf"_qs},
        {u"file-absent"_qs, Type::file, u"/absent/file.txt"_qs,
         [](ClipboardItem& item) { item.setFileSize(0); }},
        {u"link"_qs, Type::url, previewedPage(), fromEditor},
        {u"link-plain-page"_qs, Type::url, plainPage()},
        {u"link-unknown"_qs, Type::url, u"https://example.net/unknown"_qs},
        {u"link-long"_qs, Type::url, longAddress()},
        {u"link-broken"_qs, Type::url, u"http://["_qs},
        {u"colour"_qs, Type::color, u"#3b82f6"_qs, fromEditor},
        {u"colour-translucent"_qs, Type::color, u"rgba(255, 59, 48, 0.4)"_qs},
        {u"colour-broken"_qs, Type::color, u"rgb(1, 2)"_qs},
    };
}

} // namespace

void fillWithDetails(ModelContainer& container) {
    ModelContext context(container);
    Timestamp time{std::chrono::seconds{1'700'000'000}};
    for (const auto& row : rows()) {
        time -= std::chrono::seconds{1};
        const auto item = std::make_shared<ClipboardItem>(row.content, row.type, std::nullopt, time, false,
                                                          ItemSource::clipboard);
        if (row.prepare)
            row.prepare(*item);
        context.insert(item);
    }
    if (!context.save())
        qFatal("The rows of the pictures cannot be saved.");
}

QStringList detailNames() {
    QStringList names;
    for (const auto& row : rows())
        names.append(row.name);
    return names;
}

std::map<QUrl, LinkPreviewCache::Preview> detailPreviews() {
    return {{QUrl(previewedPage()),
             {.title = u"클립보드를 정리하는 일곱 가지 방법, 그리고 한 줄로는 끝나지 않는 긴 제목"_qs,
              .siteName = u"예시 신문"_qs,
              .image = picture({1200, 630}),
              .favicon = picture({32, 32})}},
            {QUrl(plainPage()), {.title = u"Example"_qs, .siteName = {}, .image = {}, .favicon = {}}}};
}

} // namespace kestrova
