#include "Kestrova/shelf/ParsedColor.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kestrova {
namespace {

QColor fromChannels(double red, double green, double blue, double alpha) {
    const auto drawnIn = [](double channel) { return static_cast<float>(std::clamp(channel, 0.0, 1.0)); };
    return QColor::fromRgbF(drawnIn(red), drawnIn(green), drawnIn(blue), drawnIn(alpha));
}

std::optional<QColor> fromHexadecimal(QStringView digits) {
    const bool areDigits = std::ranges::all_of(digits, [](QChar digit) {
        return (digit >= u'0' && digit <= u'9') || (digit.toLower() >= u'a' && digit.toLower() <= u'f');
    });
    if (!areDigits)
        return {};
    const auto number = digits.toUInt(nullptr, 16);
    const auto byte = [number](int place) { return ((number >> (8 * place)) & 0xFFu) / 255.0; };
    const auto digit = [number](int place) { return ((number >> (4 * place)) & 0xFu) / 15.0; };
    switch (digits.size()) {
    case 8:
        return fromChannels(byte(3), byte(2), byte(1), byte(0));
    case 6:
        return fromChannels(byte(2), byte(1), byte(0), 1);
    case 3:
        return fromChannels(digit(2), digit(1), digit(0), 1);
    default:
        return {};
    }
}

/// A piece that is no number only shortens the list.
std::vector<double> numbersIn(QStringView arguments) {
    auto pieces = arguments.toString();
    pieces.replace(u',', u' ').remove(u'%');
    std::vector<double> numbers;
    for (const auto piece : QStringView(pieces).split(u' ', Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const double number = piece.toDouble(&isNumber);
        if (isNumber && std::isfinite(number))
            numbers.push_back(number);
    }
    return numbers;
}

QColor fromHue(double hue, double saturation, double lightness, double alpha) {
    const double chroma = (1 - std::abs(2 * lightness - 1)) * saturation;
    const double sector = std::fmod(hue, 360) / 60;
    const double second = chroma * (1 - std::abs(std::fmod(sector, 2) - 1));
    const double least = lightness - chroma / 2;
    constexpr std::size_t c = 0;
    constexpr std::size_t x = 1;
    constexpr std::size_t none = 2;
    const std::array parts{chroma, second, 0.0};
    constexpr std::array<std::array<std::size_t, 3>, 6> sectors{
        {{c, x, none}, {x, c, none}, {none, c, x}, {none, x, c}, {x, none, c}, {c, none, x}}};
    // A negative hue lies in no sector.
    if (sector < 0)
        return fromChannels(least, least, least, alpha);
    const auto& order = sectors[static_cast<std::size_t>(sector)];
    return fromChannels(parts[order[0]] + least, parts[order[1]] + least, parts[order[2]] + least, alpha);
}

std::optional<QColor> fromFunction(QStringView text) {
    const auto open = text.indexOf(u'(');
    const auto close = text.lastIndexOf(u')');
    if (open < 0 || close < open)
        return {};
    const auto name = text.first(open);
    const auto numbers = numbersIn(text.sliced(open + 1, close - open - 1));
    const auto is = [&](QStringView function, std::size_t count) {
        return name.compare(function, Qt::CaseInsensitive) == 0 && numbers.size() == count;
    };
    if (is(u"rgb", 3) || is(u"rgba", 4))
        return fromChannels(numbers[0] / 255, numbers[1] / 255, numbers[2] / 255,
                            numbers.size() == 4 ? numbers[3] : 1);
    if (is(u"hsl", 3) || is(u"hsla", 4))
        return fromHue(numbers[0], numbers[1] / 100, numbers[2] / 100, numbers.size() == 4 ? numbers[3] : 1);
    return {};
}

} // namespace

std::optional<QColor> parsedColor(QStringView text) {
    const auto trimmed = text.trimmed();
    return trimmed.startsWith(u'#') ? fromHexadecimal(trimmed.sliced(1)) : fromFunction(trimmed);
}

} // namespace kestrova
