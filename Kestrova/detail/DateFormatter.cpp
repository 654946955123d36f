#include "Kestrova/detail/DateFormatter.h"

#include <QDateTime>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace kestrova {

struct DateFormatter::Format {
    std::unique_ptr<icu::DateFormat> made;
};

DateFormatter::DateFormatter(const QLocale& locale) : m_locale(locale), m_format(std::make_unique<Format>()) {
    UErrorCode error = U_ZERO_ERROR;
    const auto icuLocale = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), error);
    // The toolkit's locales know no medium style.
    m_format->made.reset(icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium,
                                                                 icu::DateFormat::kShort, icuLocale));
    if (m_format->made)
        m_format->made->setTimeZone(*icu::TimeZone::getGMT());
}

DateFormatter::~DateFormatter() = default;

QString DateFormatter::string(Timestamp moment) const {
    const auto sinceEpoch = moment.time_since_epoch().count();
    const auto local = QDateTime::fromMSecsSinceEpoch(sinceEpoch);
    // ICU lacks data for hardly any locale, but then it makes no format.
    if (!m_format->made)
        return m_locale.toString(local, QLocale::ShortFormat);
    // A format keeps the zone that it was made in; the person may have travelled since.
    constexpr double millisecondsPerSecond = 1000;
    const double shifted = static_cast<double>(sinceEpoch) + local.offsetFromUtc() * millisecondsPerSecond;
    icu::UnicodeString text;
    m_format->made->format(shifted, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace kestrova
