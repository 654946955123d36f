#pragma once

#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>

namespace kestrova {

/// What kind of content a row of the history holds. Stored as text, so that a store stays readable when a
/// kind is added.
enum class ClipboardItemType { text, rtf, image, file, url, color };

inline constexpr std::array allClipboardItemTypes{ClipboardItemType::text,  ClipboardItemType::rtf,
                                                  ClipboardItemType::image, ClipboardItemType::file,
                                                  ClipboardItemType::url,   ClipboardItemType::color};

constexpr QStringView rawText(ClipboardItemType type) {
    constexpr std::array<QStringView, allClipboardItemTypes.size()> texts{u"text", u"rtf", u"image",
                                                                          u"file", u"url", u"color"};
    return texts[static_cast<std::size_t>(type)];
}

/// The case with that raw text, to the letter; absent if there is none.
constexpr std::optional<ClipboardItemType> clipboardItemType(QStringView raw) {
    const auto found =
        std::ranges::find_if(allClipboardItemTypes, [raw](auto type) { return rawText(type) == raw; });
    return found == allClipboardItemTypes.end() ? std::nullopt : std::optional{*found};
}

} // namespace kestrova
