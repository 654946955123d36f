#pragma once

#include "KestrovaCore/FoldedText.h"
#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/Timestamp.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

/// The searchable form of one text, made at the first search and kept with the values that it came from. It
/// is no value of the record, so it makes no difference to a comparison.
class FoldedForm {
public:
    const QByteArray& of(const QString& text) const {
        if (m_folded.isNull() && !text.isEmpty())
            m_folded = foldedForSearch(text);
        return m_folded;
    }
    bool isMade() const { return !m_folded.isNull(); }
    void forget() { m_folded = {}; }
    bool operator==(const FoldedForm&) const { return true; }

private:
    mutable QByteArray m_folded;
};

/// The stored fields of a ClipboardItem, apart from the bytes of its picture, which stay on disk.
struct ClipboardItemValues {
    QString content;
    std::optional<QString> rawType;
    std::optional<std::int64_t> width;
    std::optional<std::int64_t> height;
    std::optional<QString> fileURLString;
    std::optional<std::int64_t> fileSize;
    Timestamp createdAt;
    std::optional<QString> sourceApp;
    bool pinned = false;
    /// In the order in which the item was put into them.
    std::optional<std::vector<CollectionID>> collections;
    std::optional<QString> ocrText;
    std::optional<QString> rawSource;
    /// Size of `imageData`; absent if there is none.
    std::optional<std::int64_t> imageByteCount;

    FoldedForm foldedContent;
    FoldedForm foldedOcrText;

    bool operator==(const ClipboardItemValues&) const = default;
};

/// The stored fields of a KovaCollection.
struct KovaCollectionValues {
    QString name;
    Timestamp createdAt;
    std::int64_t sortOrder = 0;
    std::optional<QString> icon;
    std::optional<QString> colorHex;

    bool operator==(const KovaCollectionValues&) const = default;
};

/// The same values without a membership in `collection`; `values` itself where it has none.
std::shared_ptr<const ClipboardItemValues>
withoutMembership(const std::shared_ptr<const ClipboardItemValues>& values, CollectionID collection);

/// Whether the item's content or recognised text holds `term`, in any case.
bool matches(const ClipboardItemValues& values, const SearchTerm& term);

} // namespace kestrova
