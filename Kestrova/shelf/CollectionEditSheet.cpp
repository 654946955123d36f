#include "Kestrova/shelf/CollectionEditSheet.h"

#include "Kestrova/detail/ColorFormats.h"
#include "KestrovaCore/KovaCollection.h"

#include <utility>

namespace kestrova {

QString CollectionEditSheet::Mode::id() const {
    if (m_kind == Kind::create)
        return QStringLiteral("create");
    return QStringLiteral("edit-%1").arg(std::hash<CollectionID>{}(m_collection->id()));
}

const std::array<CollectionEditSheet::Swatch, 9>& CollectionEditSheet::swatches() {
    static const std::array<Swatch, 9> all{{
        {QStringLiteral("기본"), std::nullopt},
        {QStringLiteral("Blue"), QStringLiteral("#007AFF")},
        {QStringLiteral("Indigo"), QStringLiteral("#5856D6")},
        {QStringLiteral("Purple"), QStringLiteral("#AF52DE")},
        {QStringLiteral("Pink"), QStringLiteral("#FF2D55")},
        {QStringLiteral("Red"), QStringLiteral("#FF3B30")},
        {QStringLiteral("Orange"), QStringLiteral("#FF9500")},
        {QStringLiteral("Green"), QStringLiteral("#34C759")},
        {QStringLiteral("Teal"), QStringLiteral("#30B0C7")},
    }};
    return all;
}

CollectionEditSheet::CollectionEditSheet(Mode openedFor, Submit submitTo, std::function<void()> cancelTo)
    : mode(std::move(openedFor)), onSubmit(std::move(submitTo)), onCancel(std::move(cancelTo)) {
    if (const auto& collection = mode.collection()) {
        _name = collection->name();
        _selectedColorHex = collection->colorHex();
    }
}

void CollectionEditSheet::submit() {
    if (const auto name = _name.trimmed(); !name.isEmpty())
        onSubmit(name, _selectedColorHex);
}

void CollectionEditSheet::cancel() {
    onCancel();
}

QString CollectionEditSheet::title() const {
    return mode.kind() == Mode::Kind::edit ? QStringLiteral("컬렉션 편집") : QStringLiteral("새 컬렉션");
}

QString CollectionEditSheet::submitTitle() const {
    return mode.kind() == Mode::Kind::edit ? QStringLiteral("저장") : QStringLiteral("만들기");
}

QString CollectionEditSheet::previewName() const {
    const auto name = _name.trimmed();
    return name.isEmpty() ? QStringLiteral("컬렉션") : name;
}

std::optional<RGBA> CollectionEditSheet::previewColor() const {
    const auto& hex = _hoveringSwatch ? _hoverHex : _selectedColorHex;
    return hex ? parseColor(*hex) : std::nullopt;
}

} // namespace kestrova
