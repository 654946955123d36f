#include "Kestrova/commandline/ItemListing.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <vector>

namespace kestrova {
namespace {

QJsonValue json(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

QJsonValue json(std::optional<std::int64_t> number) {
    return number ? QJsonValue(static_cast<qint64>(*number)) : QJsonValue(QJsonValue::Null);
}

QJsonArray collectionNames(const ClipboardItem& item) {
    QJsonArray names;
    if (const auto collections = item.collections())
        for (const auto& collection : *collections)
            names.append(collection->name());
    return names;
}

QJsonObject json(const ClipboardItem& item) {
    return {{QStringLiteral("id"), QString::number(item.id().value)},
            {QStringLiteral("content"), item.content()},
            {QStringLiteral("rawType"), json(item.rawType())},
            {QStringLiteral("width"), json(item.width())},
            {QStringLiteral("height"), json(item.height())},
            {QStringLiteral("fileURLString"), json(item.fileURLString())},
            {QStringLiteral("fileSize"), json(item.fileSize())},
            {QStringLiteral("createdAt"), iso8601(item.createdAt())},
            {QStringLiteral("sourceApp"), json(item.sourceApp())},
            {QStringLiteral("pinned"), item.pinned()},
            {QStringLiteral("collections"), collectionNames(item)},
            {QStringLiteral("ocrText"), json(item.ocrText())},
            {QStringLiteral("rawSource"), json(item.rawSource())}};
}

constexpr std::size_t columnCount = 5;
using Line = std::array<QString, columnCount>;

Line line(const ClipboardItem& item) {
    const auto local = QDateTime::fromMSecsSinceEpoch(item.createdAt().time_since_epoch().count());
    QString kind = rawText(item.type()).toString();
    if (item.width() && item.height())
        kind += QStringLiteral(" %1×%2").arg(*item.width()).arg(*item.height());
    return {QString::number(item.id().value) + (item.pinned() ? QStringLiteral("*") : QString()),
            local.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), kind,
            oneLine(item.sourceApp().value_or(QStringLiteral("-"))), oneLine(item.content())};
}

} // namespace

QByteArray jsonListing(std::span<const std::shared_ptr<ClipboardItem>> items) {
    // Row by row: an array of all objects would take several times the room of its text.
    QByteArray listing("[\n");
    for (const auto& item : items) {
        listing += QJsonDocument(json(*item)).toJson(QJsonDocument::Compact);
        listing += item == items.back() ? "\n" : ",\n";
    }
    return listing + "]\n";
}

QByteArray tableListing(std::span<const std::shared_ptr<ClipboardItem>> items) {
    std::vector<Line> lines{{QStringLiteral("ID"), QStringLiteral("TIME"), QStringLiteral("TYPE"),
                             QStringLiteral("APPLICATION"), QStringLiteral("CONTENT")}};
    for (const auto& item : items)
        lines.push_back(line(*item));
    std::array<qsizetype, columnCount> widths{};
    for (const auto& each : lines)
        for (std::size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], each[column].size());
    QString table;
    for (const auto& each : lines) {
        // The content stands last: it alone may hold characters that take two cells.
        for (std::size_t column = 0; column + 1 < columnCount; ++column)
            table += each[column].leftJustified(widths[column]) + QStringLiteral("  ");
        table += each[columnCount - 1] + u'\n';
    }
    return table.toUtf8();
}

QString oneLine(const QString& text) {
    constexpr qsizetype longest = 120;
    QString line = text.left(longest);
    if (text.size() > longest && line.back().isHighSurrogate())
        line.chop(1);
    for (QChar& character : line)
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    return line.trimmed();
}

} // namespace kestrova
