#include "Kestrova/detail/ByteCountFormatter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrova {
namespace {

struct Unit {
    double bytes;
    int decimals;
    QLatin1StringView name;
};
constexpr std::array units{Unit{1e3, 0, QLatin1StringView("KB")}, Unit{1e6, 1, QLatin1StringView("MB")},
                           Unit{1e9, 2, QLatin1StringView("GB")}};

double rounded(double bytes, const Unit& unit) {
    const double scale = std::pow(10, unit.decimals);
    return std::round(bytes / unit.bytes * scale) / scale;
}

} // namespace

QString ByteCountFormatter::string(std::int64_t bytes) const {
    if (bytes <= 0)
        return QStringLiteral("Zero KB");
    const auto count = static_cast<double>(bytes);
    // 999,500 bytes are no thousand kilobytes but a megabyte.
    constexpr double step = 1000;
    const auto fitting = std::find_if(units.begin(), units.end() - 1,
                                      [count](const Unit& unit) { return rounded(count, unit) < step; });
    const auto number = std::max(rounded(count, *fitting), fitting == units.begin() ? 1.0 : 0.0);
    auto digits = m_locale.toString(number, 'f', fitting->decimals);
    if (fitting->decimals > 0) {
        const auto zero = m_locale.zeroDigit();
        while (digits.endsWith(zero))
            digits.chop(zero.size());
        if (digits.endsWith(m_locale.decimalPoint()))
            digits.chop(m_locale.decimalPoint().size());
    }
    return digits + u' ' + fitting->name;
}

} // namespace kestrova
