#include "tests/pictures/SampleHistories.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>
#include <QUrl>

#include <memory>
#include <vector>

namespace kestrova {
namespace {

using Type = ClipboardItemType;

/// A store that is being filled. What is added first is the newest.
class Filling {
public:
    explicit Filling(ModelContainer& container) : m_context(container) {}
    ~Filling() {
        if (!m_context.save())
            qFatal("The rows of the pictures cannot be saved.");
    }

    std::shared_ptr<KovaCollection> addCollection(const QString& name, const char* color = nullptr) {
        const auto hex = color ? std::optional(QString::fromLatin1(color)) : std::nullopt;
        const auto collection = std::make_shared<KovaCollection>(name, ++m_lastSortOrder, std::nullopt, hex);
        m_context.insert(collection);
        return collection;
    }
    std::shared_ptr<ClipboardItem> add(const QString& content, Type type = Type::text, bool pinned = false,
                                       ItemSource source = ItemSource::clipboard) {
        m_time -= std::chrono::seconds{1};
        const auto item =
            std::make_shared<ClipboardItem>(content, type, std::nullopt, m_time, pinned, source);
        m_context.insert(item);
        return item;
    }
    std::shared_ptr<ClipboardItem> addPicture(QSize size, const QColor& from, const QColor& to) {
        const auto picture = add(QString(), Type::image, false, ItemSource::screenshot);
        picture->setImageData(screenshot(size, from, to));
        picture->setWidth(size.width());
        picture->setHeight(size.height());
        return picture;
    }

private:
    static QByteArray screenshot(QSize size, const QColor& from, const QColor& to) {
        QImage image(size, QImage::Format_RGB32);
        QPainter painter(&image);
        QLinearGradient gradient(0, 0, size.width(), size.height());
        gradient.setColorAt(0, from);
        gradient.setColorAt(1, to);
        painter.fillRect(image.rect(), gradient);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 220));
        const QSize margin = size / 8;
        painter.drawRoundedRect(
            image.rect().adjusted(margin.width(), margin.height(), -margin.width(), -margin.height()), 24,
            24);
        painter.end();
        QBuffer buffer;
        image.save(&buffer, "PNG");
        return buffer.data();
    }

    ModelContext m_context;
    std::int64_t m_lastSortOrder = 0;
    Timestamp m_time{std::chrono::seconds{1'700'000'000}};
};

struct Row {
    QString content;
    Type type = Type::text;
    bool pinned = false;
};

std::vector<Row> everyKind() {
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

std::vector<Row> extremes() {
    return {
        {QStringLiteral("띄어쓰기가없는아주긴한글문장은어디에서끊어야할지알수없습니다").repeated(30)},
        {u"هذا نص عربي يبدأ من اليمين، مع English في وسطه و 123 أرقام، ثم يستمر حتى نهاية السطر"_qs},
        {u"שלום עולם: 👨‍👩‍👧‍👦 and back again"_qs, Type::text, true},
        {u"https://example.org/"_qs + QStringLiteral("a-very-long-path/").repeated(40) +
             u"?query=%ED%95%9C%EA%B8%80"_qs,
         Type::url, true},
        {u"/home/user/"_qs + QStringLiteral("deep folder/").repeated(20) +
             QStringLiteral("이름이 아주 아주 긴 파일 ").repeated(8) + u"(최종) (진짜 최종).pdf"_qs,
         Type::file},
        {QStringLiteral("Supercalifragilisticexpialidocious").repeated(40), Type::rtf},
        {u"👩‍💻👨‍👩‍👧‍👦🏳️‍🌈🇰🇷👍🏽 🎉🎉🎉"_qs},
        {u"Z̡̛̗̲̀́̂̃ä̴̧͙͈́̂̃l̶̨̛͎̖̀g̷̢̛̘̃̀o̵̧̖͂̀ und e\u0301 statt é"_qs},
        {u"กรุงเทพมหานคร อมรรัตนโกสินทร์ · हिन्दी में लिखा हुआ · 漢字かな交じり文"_qs},
        {u"\t\tif (x) {\n\t\t\treturn;\n\t\t}\n"_qs},
        {u"x"_qs},
        {u"#ffffff"_qs, Type::color},
        {u"#00000000"_qs, Type::color},
        {u"hsl(210, 100%, 50%)"_qs, Type::color, true},
    };
}

} // namespace

void fillWithEveryKind(ModelContainer& container) {
    Filling filling(container);
    const auto work = filling.addCollection(u"업무"_qs, "#FF9F0A");
    const auto code = filling.addCollection(u"Code snippets"_qs, "#30D158");
    filling.addCollection(u"나중에 읽을 아주 긴 이름의 모음집"_qs);
    filling.addPicture({600, 900}, QColor(50, 173, 230), QColor(48, 209, 88));
    filling.addPicture({1280, 800}, QColor(94, 92, 230), QColor(255, 55, 95));
    for (const auto& row : everyKind()) {
        const auto item = filling.add(row.content, row.type, row.pinned);
        if (row.type == Type::file)
            item->setFileURLString(QUrl::fromLocalFile(row.content).toString());
        if (row.pinned || row.type == Type::file)
            item->setCollections({{work}});
        if (row.content.contains(u'('))
            item->setCollections({{code}});
    }
}

void fillWithExtremes(ModelContainer& container) {
    Filling filling(container);
    filling.addCollection(QStringLiteral("끝나지 않는 이름 ").repeated(20), "#FFFFFF");
    filling.addCollection(u"مجموعة عربية طويلة الاسم إلى حد ما"_qs, "#000000");
    filling.addCollection(u"🎉 & <b>Ampersands</b> && more"_qs, "#FF3B30");
    const auto rows = extremes();
    filling.add(rows.front().content);
    filling.addPicture({4000, 60}, Qt::white, Qt::black);
    filling.addPicture({20, 3000}, Qt::black, Qt::white);
    filling.addPicture({1, 1}, Qt::red, Qt::red);
    for (auto row = rows.begin() + 1; row != rows.end(); ++row)
        filling.add(row->content, row->type, row->pinned);
}

void fillWithMany(ModelContainer& container) {
    constexpr int collectionCount = 24;
    constexpr int rowCount = 5000;
    Filling filling(container);
    std::vector<std::shared_ptr<KovaCollection>> collections;
    for (int i = 1; i <= collectionCount; ++i)
        collections.push_back(filling.addCollection(QStringLiteral("Collection %1").arg(i), "#0A84FF"));
    const auto kinds = everyKind();
    for (int i = 0; i < rowCount; ++i) {
        const auto& kind = kinds[static_cast<std::size_t>(i) % kinds.size()];
        const auto item = filling.add(kind.content, kind.type);
        // So that the counts are of one, two, three and four digits.
        if (i % 2 == 0)
            item->setCollections({{collections.front()}});
        else if (i < 400)
            item->setCollections({{collections[1]}});
        else if (i < 480)
            item->setCollections({{collections[2]}});
    }
}

} // namespace kestrova
