#include "Kestrova/detail/ColorFormats.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <vector>

namespace kestrova {
namespace {

// Reading

std::optional<RGBA> fromHexadecimal(QStringView digits) {
    const bool areDigits = std::ranges::all_of(digits, [](QChar digit) {
        return (digit >= u'0' && digit <= u'9') || (digit >= u'a' && digit <= u'f') ||
               (digit >= u'A' && digit <= u'F');
    });
    if (!areDigits)
        return {};
    const auto number = digits.toUInt(nullptr, 16);
    const auto byte = [number](int place) { return ((number >> (8 * place)) & 0xFFu) / 255.0; };
    const auto digit = [number](int place) { return ((number >> (4 * place)) & 0xFu) / 15.0; };
    switch (digits.size()) {
    case 8:
        return RGBA{byte(3), byte(2), byte(1), byte(0)};
    case 6:
        return RGBA{byte(2), byte(1), byte(0), 1};
    case 3:
        return RGBA{digit(2), digit(1), digit(0), 1};
    default:
        return {};
    }
}

/// Absent unless the whole piece is one that a double can hold, written with the digits and signs of ASCII.
/// "inf" and "nan" are words here: a channel that is not finite would make every colour that it is mixed into
/// no colour at all.
std::optional<double> finiteNumber(QStringView piece) {
    const QByteArray digits = piece.toLatin1();
    const bool hasPlus = digits.startsWith('+') && !digits.startsWith("+-");
    double number = 0;
    const auto read = std::from_chars(digits.begin() + (hasPlus ? 1 : 0), digits.end(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == digits.end() && std::isfinite(number);
    return isNumber ? std::optional{number} : std::nullopt;
}

std::vector<double> numbersIn(QStringView arguments) {
    auto pieces = arguments.toString();
    std::ranges::replace_if(
        pieces, [](QChar letter) { return letter == u',' || letter.isSpace(); }, QChar(u' '));
    pieces.remove(u'%');
    std::vector<double> numbers;
    for (const auto piece : QStringView(pieces).split(u' ', Qt::SkipEmptyParts))
        if (const auto number = finiteNumber(piece))
            numbers.push_back(*number);
    return numbers;
}

RGBA fromHue(double hue, double saturation, double lightness, double alpha) {
    const double c = (1 - std::abs(2 * lightness - 1)) * saturation;
    const double sector = std::fmod(hue, 360) / 60;
    const double x = c * (1 - std::abs(std::fmod(sector, 2) - 1));
    const double m = lightness - c / 2;
    const std::array<std::array<double, 3>, 6> sectors{
        {{c, x, 0}, {x, c, 0}, {0, c, x}, {0, x, c}, {x, 0, c}, {c, 0, x}}};
    // A negative hue lies in no sector.
    if (sector < 0)
        return {m, m, m, alpha};
    const auto& [r, g, b] = sectors.at(static_cast<std::size_t>(sector));
    return {r + m, g + m, b + m, alpha};
}

std::optional<RGBA> fromFunction(QStringView text) {
    const auto open = text.indexOf(u'(');
    const auto close = text.lastIndexOf(u')');
    if (open < 0 || close < open)
        return {};
    const auto name = text.first(open).toString().toLower();
    const auto numbers = numbersIn(text.sliced(open + 1, close - open - 1));
    const auto is = [&](QStringView function, std::size_t count) {
        return name == function && numbers.size() == count;
    };
    if (is(u"rgb", 3) || is(u"rgba", 4))
        return RGBA{numbers[0] / 255, numbers[1] / 255, numbers[2] / 255,
                    numbers.size() == 4 ? numbers[3] : 1};
    if (is(u"hsl", 3) || is(u"hsla", 4))
        return fromHue(numbers[0], numbers[1] / 100, numbers[2] / 100, numbers.size() == 4 ? numbers[3] : 1);
    return {};
}

/// The sums of a hue can overflow.
bool isFinite(const RGBA& color) {
    return std::isfinite(color.r) && std::isfinite(color.g) && std::isfinite(color.b) &&
           std::isfinite(color.a);
}

// Writing

int rounded(double value) {
    if (std::isnan(value))
        return 0;
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp(std::round(value), double{Limits::min()}, double{Limits::max()}));
}

std::array<int, 3> bytesOf(const RGBA& color) {
    return {rounded(color.r * 255), rounded(color.g * 255), rounded(color.b * 255)};
}

double drawnIn(double value) {
    if (std::isnan(value))
        return 0;
    using Limits = std::numeric_limits<double>;
    return std::clamp(value, Limits::lowest(), Limits::max());
}

/// As printf writes it in the C locale: the exact value decides, and a half goes to the even digit. Always
/// digits, also of what is not finite.
QString fixed(double value, int decimals) {
    // The largest number has 309 digits before the point.
    std::array<char, 384> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), drawnIn(value),
                                       std::chars_format::fixed, decimals);
    return QString::fromLatin1(text.data(), written.ptr - text.data());
}

/// At least two digits; a negative number in the two's complement of 32 bits.
QString hexadecimal(int number) {
    return QString::number(static_cast<unsigned>(number), 16).toUpper().rightJustified(2, u'0');
}

} // namespace

std::optional<RGBA> parseColor(QStringView text) {
    const auto trimmed = text.trimmed();
    const auto color = trimmed.startsWith(u'#') ? fromHexadecimal(trimmed.sliced(1)) : fromFunction(trimmed);
    return color && isFinite(*color) ? color : std::nullopt;
}

QString hexString(const RGBA& color) {
    auto text = QStringLiteral("#");
    for (const int byte : bytesOf(color))
        text += hexadecimal(byte);
    if (color.a < 1)
        text += hexadecimal(rounded(color.a * 255));
    return text;
}

QString rgbString(const RGBA& color) {
    const auto [r, g, b] = bytesOf(color);
    if (color.a < 1)
        return QStringLiteral("rgba(%1, %2, %3, %4)").arg(r).arg(g).arg(b).arg(fixed(color.a, 2));
    return QStringLiteral("rgb(%1, %2, %3)").arg(r).arg(g).arg(b);
}

QString hslString(const RGBA& color) {
    const auto [hue, saturation, lightness] = hsl(color.r, color.g, color.b);
    const auto numbers = QStringLiteral("%1, %2%, %3%")
                             .arg(fixed(hue, 0), fixed(saturation * 100, 0), fixed(lightness * 100, 0));
    if (color.a < 1)
        return QStringLiteral("hsla(%1, %2)").arg(numbers, fixed(color.a, 2));
    return QStringLiteral("hsl(%1)").arg(numbers);
}

HSL hsl(double r, double g, double b) {
    const double max = std::max({r, g, b});
    const double min = std::min({r, g, b});
    const double lightness = (max + min) / 2;
    if (max == min)
        return {0, 0, lightness};
    const double d = max - min;
    double sector = (r - g) / d + 4;
    if (r == max)
        sector = std::fmod((g - b) / d, 6);
    else if (g == max)
        sector = (b - r) / d + 2;
    const double degrees = sector * 60;
    return {.hue = degrees < 0 ? degrees + 360 : degrees,
            .saturation = lightness > 0.5 ? d / (2 - max - min) : d / (max + min),
            .lightness = lightness};
}

} // namespace kestrova
