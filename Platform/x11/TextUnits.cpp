#include "Platform/x11/TextUnits.h"

#include <QList>

namespace kestrova {

std::optional<TextUnits> textUnitsOfToolkit(QStringView name) {
    // Browsers hand an insertion to another process and answer before it is done: what became of it cannot be
    // told in time, so they and everything unknown are left to the keys.
    if (name.compare(QLatin1StringView("gtk"), Qt::CaseInsensitive) == 0 || name == QLatin1StringView("GAIL"))
        return TextUnits{.length = TextUnit::Byte, .offset = TextUnit::CodePoint};
    if (name == QLatin1StringView("Qt"))
        return TextUnits{.length = TextUnit::Utf16, .offset = TextUnit::Utf16};
    return {};
}

int lengthIn(const QString& text, TextUnit unit) {
    switch (unit) {
    case TextUnit::Byte:
        return static_cast<int>(text.toUtf8().size());
    case TextUnit::Utf16:
        return static_cast<int>(text.size());
    case TextUnit::CodePoint:
        return static_cast<int>(text.toUcs4().size());
    }
    Q_UNREACHABLE();
}

std::u32string characters(const QString& text, TextUnit offset) {
    if (offset == TextUnit::CodePoint)
        return text.toStdU32String();
    std::u32string units;
    units.reserve(static_cast<std::size_t>(text.size()));
    for (const QChar unit : text)
        units.push_back(unit.unicode());
    return units;
}

QString textOf(std::u32string_view characters, TextUnit offset) {
    if (offset == TextUnit::CodePoint)
        return QString::fromUcs4(characters.data(), static_cast<qsizetype>(characters.size()));
    QString text;
    text.reserve(static_cast<qsizetype>(characters.size()));
    for (const char32_t unit : characters)
        text.append(QChar(static_cast<char16_t>(unit)));
    return text;
}

} // namespace kestrova
