#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace kestrova;

namespace {

bool areAll(const RGBA& color, bool (*test)(double)) {
    return std::ranges::all_of(std::array{color.r, color.g, color.b, color.a}, test);
}

/// Writes a colour, reads that and writes it again.
template<typename Form>
void checkComesBack(const RGBA& color, Form form) {
    const QString written = form(color);
    const auto read = parseColor(written);
    if (!read)
        qFatal("A form of a colour cannot be read.");
    // An alpha that is rounded up to 1 is no longer written, so the second form is the one that stands.
    const QString again = form(*read);
    if (color.a < 1 && read->a >= 1 ? form(*parseColor(again)) != again : again != written)
        qFatal("A form of a colour reads as another colour.");
}

} // namespace

/// A text that may name a colour, as it stands in the history and in collections.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto color = parseColor(text);
    if (parseColor(u' ' + text + u'\n') != color)
        qFatal("White space around a colour matters.");
    if (!color)
        return 0;

    if (!areAll(*color, [](double channel) { return std::isfinite(channel); }))
        qFatal("A channel is no number.");
    if (!qColor(*color).isValid())
        qFatal("A colour cannot be shown.");
    // Of channels without a bound the other forms are text alone, but must be written all the same, and in
    // digits: none of "inf" and "nan" is one.
    for (const auto& form : {hexString(*color), rgbString(*color), hslString(*color)})
        if (form.isEmpty() || form.contains(u'n'))
            qFatal("A colour cannot be written.");
    checkComesBack(*color, rgbString);
    if (areAll(*color, [](double channel) { return channel >= 0 && channel <= 1; })) {
        checkComesBack(*color, hexString);
        if (!parseColor(hslString(*color)))
            qFatal("The hue of a colour cannot be read.");
    }
    return 0;
}
