#pragma once

#include <QString>

#include <optional>
#include <string>

namespace kestrova {

/// In what a program counts the text of its elements.
enum class TextUnit { Byte, Utf16, CodePoint };

/// How a toolkit reads the numbers that come with a text.
struct TextUnits {
    /// Of the length that an insertion tells.
    TextUnit length = TextUnit::Byte;
    /// Of positions: `Utf16` or `CodePoint`.
    TextUnit offset = TextUnit::CodePoint;

    bool operator==(const TextUnits&) const = default;
};

/// Absent for a toolkit whose editing is not known to be done when it answers.
std::optional<TextUnits> textUnitsOfToolkit(QStringView name);

/// The length of `text` in `unit`.
int lengthIn(const QString& text, TextUnit unit);

/// One element an offset, `Utf16` or `CodePoint`.
std::u32string characters(const QString& text, TextUnit offset);
/// The inverse of `characters`.
QString textOf(std::u32string_view characters, TextUnit offset);

} // namespace kestrova
