#include "KestrovaCore/ClipboardItem.h"

#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"

#include <utility>

namespace kestrova {

ClipboardItem::ClipboardItem(QString content, ClipboardItemType type, std::optional<QString> sourceApp,
                             Timestamp createdAt, bool pinned, ItemSource source) {
    ClipboardItemValues values;
    values.content = std::move(content);
    values.rawType = rawText(type).toString();
    values.sourceApp = std::move(sourceApp);
    values.createdAt = createdAt;
    values.pinned = pinned;
    values.rawSource = rawText(source).toString();
    m_values = std::make_shared<const ClipboardItemValues>(std::move(values));
}

ClipboardItem::ClipboardItem(ItemID id, std::shared_ptr<const ClipboardItemValues> values,
                             ModelContext& context)
    : m_id(id), m_values(std::move(values)), m_context(&context) {}

ClipboardItem::~ClipboardItem() {
    if (m_context)
        m_context->forget(*this);
}

template<typename Edit>
void ClipboardItem::change(Field field, Edit edit) {
    auto edited = std::make_shared<ClipboardItemValues>(*m_values);
    edit(*edited);
    m_values = std::move(edited);
    m_changedFields |= field;
    if (m_context)
        m_context->itemChanged(*this);
}

void ClipboardItem::mergeSaved(const std::shared_ptr<const ClipboardItemValues>& saved) {
    if (m_changedFields == 0) {
        m_values = saved;
        return;
    }
    auto merged = std::make_shared<ClipboardItemValues>(*saved);
    const auto keep = [&](Field field, auto member) {
        if (m_changedFields & field)
            *merged.*member = *m_values.*member;
    };
    keep(Content, &ClipboardItemValues::content);
    keep(Content, &ClipboardItemValues::foldedContent);
    keep(RawType, &ClipboardItemValues::rawType);
    keep(ImageData, &ClipboardItemValues::imageByteCount);
    keep(Width, &ClipboardItemValues::width);
    keep(Height, &ClipboardItemValues::height);
    keep(FileURLString, &ClipboardItemValues::fileURLString);
    keep(FileSize, &ClipboardItemValues::fileSize);
    keep(CreatedAt, &ClipboardItemValues::createdAt);
    keep(SourceApp, &ClipboardItemValues::sourceApp);
    keep(Pinned, &ClipboardItemValues::pinned);
    keep(Collections, &ClipboardItemValues::collections);
    keep(OcrText, &ClipboardItemValues::ocrText);
    keep(OcrText, &ClipboardItemValues::foldedOcrText);
    keep(RawSource, &ClipboardItemValues::rawSource);
    m_values = std::move(merged);
}

std::optional<QByteArray> ClipboardItem::imageData() const {
    if (m_heldImageData || !hasImageData())
        return m_heldImageData;
    return m_context ? m_context->readImageData(m_id) : std::nullopt;
}

StoredImageData ClipboardItem::storedImageData() const {
    if (m_heldImageData || !hasImageData() || !m_context)
        return StoredImageData(m_heldImageData);
    return {m_context->storePath(), m_id};
}

std::optional<std::vector<std::shared_ptr<KovaCollection>>> ClipboardItem::collections() const {
    if (!m_values->collections)
        return std::nullopt;
    std::vector<std::shared_ptr<KovaCollection>> found;
    for (const auto id : *m_values->collections)
        if (auto collection = m_context ? m_context->collection(id) : nullptr)
            found.push_back(std::move(collection));
    return found;
}

void ClipboardItem::setContent(const QString& content) {
    change(Content, [&](ClipboardItemValues& values) {
        values.content = content;
        values.foldedContent.forget();
    });
}

void ClipboardItem::setRawType(const std::optional<QString>& rawType) {
    change(RawType, [&](ClipboardItemValues& values) { values.rawType = rawType; });
}

void ClipboardItem::setImageData(const std::optional<QByteArray>& png) {
    m_heldImageData = png;
    change(ImageData, [&](ClipboardItemValues& values) {
        values.imageByteCount = png ? std::optional<std::int64_t>{png->size()} : std::nullopt;
    });
}

void ClipboardItem::setWidth(std::optional<std::int64_t> pixels) {
    change(Width, [&](ClipboardItemValues& values) { values.width = pixels; });
}

void ClipboardItem::setHeight(std::optional<std::int64_t> pixels) {
    change(Height, [&](ClipboardItemValues& values) { values.height = pixels; });
}

void ClipboardItem::setFileURLString(const std::optional<QString>& url) {
    change(FileURLString, [&](ClipboardItemValues& values) { values.fileURLString = url; });
}

void ClipboardItem::setFileSize(std::optional<std::int64_t> bytes) {
    change(FileSize, [&](ClipboardItemValues& values) { values.fileSize = bytes; });
}

void ClipboardItem::setCreatedAt(Timestamp createdAt) {
    change(CreatedAt, [&](ClipboardItemValues& values) { values.createdAt = createdAt; });
}

void ClipboardItem::setSourceApp(const std::optional<QString>& identifier) {
    change(SourceApp, [&](ClipboardItemValues& values) { values.sourceApp = identifier; });
}

void ClipboardItem::setPinned(bool pinned) {
    change(Pinned, [&](ClipboardItemValues& values) { values.pinned = pinned; });
}

void ClipboardItem::setOcrText(const std::optional<QString>& text) {
    change(OcrText, [&](ClipboardItemValues& values) {
        values.ocrText = text;
        values.foldedOcrText.forget();
    });
}

void ClipboardItem::setRawSource(const std::optional<QString>& rawSource) {
    change(RawSource, [&](ClipboardItemValues& values) { values.rawSource = rawSource; });
}

void ClipboardItem::setCollections(
    const std::optional<std::vector<std::shared_ptr<KovaCollection>>>& collections) {
    std::optional<std::vector<CollectionID>> ids;
    if (collections) {
        ids.emplace();
        for (const auto& collection : *collections)
            ids->push_back(collection->id());
    }
    change(Collections, [&](ClipboardItemValues& values) { values.collections = std::move(ids); });
}

ClipboardItemType ClipboardItem::type() const {
    return rawType() ? clipboardItemType(*rawType()).value_or(ClipboardItemType::text)
                     : ClipboardItemType::text;
}

void ClipboardItem::setType(ClipboardItemType type) {
    setRawType(rawText(type).toString());
}

ItemSource ClipboardItem::source() const {
    return rawSource() ? itemSource(*rawSource()).value_or(ItemSource::clipboard) : ItemSource::clipboard;
}

void ClipboardItem::setSource(ItemSource source) {
    setRawSource(rawText(source).toString());
}

} // namespace kestrova
