#pragma once

#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/ItemSource.h"
#include "KestrovaCore/RecordValues.h"
#include "KestrovaCore/StoredImageData.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class KovaCollection;
class ModelContext;

/// One row of the history, whatever produced it. It belongs to the context that inserted or fetched it; every
/// write of a field reaches the live queries of that context at once, and all other contexts with the next
/// save.
///
/// Equality is that of the identifier and never looks at the content. Main thread only.
class ClipboardItem {
public:
    /// All fields that are not given are absent. The item is in no context until one inserts it.
    ClipboardItem(QString content, ClipboardItemType type, std::optional<QString> sourceApp,
                  Timestamp createdAt, bool pinned, ItemSource source);
    ClipboardItem(const ClipboardItem&) = delete;
    ClipboardItem& operator=(const ClipboardItem&) = delete;
    ~ClipboardItem();

    ItemID id() const { return m_id; }
    bool operator==(const ClipboardItem& other) const {
        return this == &other || (m_id.value != 0 && m_id == other.m_id);
    }
    /// The row has gone from the store or will go with the next save; the fields still read as they were.
    bool isDeleted() const { return m_deleted; }

    const ClipboardItemValues& values() const { return *m_values; }

    const QString& content() const { return m_values->content; }
    const std::optional<QString>& rawType() const { return m_values->rawType; }
    std::optional<std::int64_t> width() const { return m_values->width; }
    std::optional<std::int64_t> height() const { return m_values->height; }
    const std::optional<QString>& fileURLString() const { return m_values->fileURLString; }
    std::optional<std::int64_t> fileSize() const { return m_values->fileSize; }
    Timestamp createdAt() const { return m_values->createdAt; }
    const std::optional<QString>& sourceApp() const { return m_values->sourceApp; }
    bool pinned() const { return m_values->pinned; }
    const std::optional<QString>& ocrText() const { return m_values->ocrText; }
    const std::optional<QString>& rawSource() const { return m_values->rawSource; }

    /// PNG bytes. Read from disk at each call unless they are unsaved; absent too, with a log line, if the
    /// disk fails.
    std::optional<QByteArray> imageData() const;
    /// The same, to be read on another thread.
    StoredImageData storedImageData() const;
    /// Tells without reading the bytes.
    bool hasImageData() const { return m_values->imageByteCount.has_value(); }

    /// The collections that hold the item. Those that have been deleted are left out.
    std::optional<std::vector<std::shared_ptr<KovaCollection>>> collections() const;

    void setContent(const QString& content);
    void setRawType(const std::optional<QString>& rawType);
    void setImageData(const std::optional<QByteArray>& png);
    void setWidth(std::optional<std::int64_t> pixels);
    void setHeight(std::optional<std::int64_t> pixels);
    void setFileURLString(const std::optional<QString>& url);
    void setFileSize(std::optional<std::int64_t> bytes);
    void setCreatedAt(Timestamp createdAt);
    void setSourceApp(const std::optional<QString>& identifier);
    void setPinned(bool pinned);
    void setOcrText(const std::optional<QString>& text);
    void setRawSource(const std::optional<QString>& rawSource);
    /// The collections must be in a context, and in the same one as the item is or will be.
    void setCollections(const std::optional<std::vector<std::shared_ptr<KovaCollection>>>& collections);

    /// Absent and unknown raw texts read as `text`.
    ClipboardItemType type() const;
    void setType(ClipboardItemType type);
    /// `screenshot` only for exactly that raw text.
    ItemSource source() const;
    void setSource(ItemSource source);

private:
    friend class ModelContainer;
    friend class ModelContext;
    friend class StoreWriter;

    /// One bit a stored field, for what an unsaved item has changed.
    enum Field : std::uint32_t {
        Content = 1u << 0,
        RawType = 1u << 1,
        ImageData = 1u << 2,
        Width = 1u << 3,
        Height = 1u << 4,
        FileURLString = 1u << 5,
        FileSize = 1u << 6,
        CreatedAt = 1u << 7,
        SourceApp = 1u << 8,
        Pinned = 1u << 9,
        Collections = 1u << 10,
        OcrText = 1u << 11,
        RawSource = 1u << 12,
    };

    ClipboardItem(ItemID id, std::shared_ptr<const ClipboardItemValues> values, ModelContext& context);

    /// Replaces the values by a copy with one field changed, and tells the context.
    template<typename Edit>
    void change(Field field, Edit edit);
    /// Takes what another context saved; fields that are changed here stay.
    void mergeSaved(const std::shared_ptr<const ClipboardItemValues>& saved);

    ItemID m_id;
    // Shared with the container and with the handles of other contexts until it is edited.
    std::shared_ptr<const ClipboardItemValues> m_values;
    // Bytes that are not on disk: unsaved ones, and those of a row that was deleted while this handle was
    // held.
    std::optional<QByteArray> m_heldImageData;
    ModelContext* m_context = nullptr;
    std::uint32_t m_changedFields = 0;
    bool m_deleted = false;
};

} // namespace kestrova
