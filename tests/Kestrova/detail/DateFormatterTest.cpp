#include "Kestrova/detail/DateFormatter.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <ctime>

namespace kestrova {
namespace {

/// The computer's time zone while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* name) : m_former(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", name);
        tzset();
    }
    ~TimeZone() {
        if (m_wasSet)
            qputenv("TZ", m_former);
        else
            qunsetenv("TZ");
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    const QByteArray m_former;
    const bool m_wasSet;
};

// 29 February 2024, 15:05:59 UTC
constexpr Timestamp someMoment{std::chrono::seconds{1'709'219'159}};

/// ICU puts narrow and ordinary blanks where its tables of the year say.
QString withPlainBlanks(QString text) {
    return text.replace(QChar(0x202F), u' ').replace(QChar(0x00A0), u' ');
}

TEST(DateFormatterTest, TheDayIsInTheMediumStyleAndTheTimeInTheShortOne) {
    const TimeZone zone("UTC");
    EXPECT_EQ(
        withPlainBlanks(DateFormatter(QLocale(QLocale::English, QLocale::UnitedStates)).string(someMoment)),
        u"Feb 29, 2024, 3:05 PM");
    EXPECT_EQ(
        withPlainBlanks(DateFormatter(QLocale(QLocale::Korean, QLocale::SouthKorea)).string(someMoment)),
        u"2024. 2. 29. 오후 3:05");
    EXPECT_EQ(withPlainBlanks(DateFormatter(QLocale(QLocale::German, QLocale::Germany)).string(someMoment)),
              u"29.02.2024, 15:05");
}

TEST(DateFormatterTest, ItIsInTheTimeZoneOfTheComputer) {
    const TimeZone zone("Asia/Seoul");
    EXPECT_EQ(withPlainBlanks(DateFormatter(QLocale(QLocale::German, QLocale::Germany)).string(someMoment)),
              u"01.03.2024, 00:05");
}

TEST(DateFormatterTest, ItFollowsThePersonIntoAnotherTimeZone) {
    const TimeZone zone("UTC");
    const DateFormatter formatter(QLocale(QLocale::German, QLocale::Germany));
    ASSERT_EQ(withPlainBlanks(formatter.string(someMoment)), u"29.02.2024, 15:05");
    const TimeZone elsewhere("America/New_York");
    EXPECT_EQ(withPlainBlanks(formatter.string(someMoment)), u"29.02.2024, 10:05");
}

TEST(DateFormatterTest, MomentsThatOnlyABrokenStoreHoldsDoNoHarm) {
    const DateFormatter formatter;
    EXPECT_FALSE(formatter.string(Timestamp::min()).isEmpty());
    EXPECT_FALSE(formatter.string(Timestamp::max()).isEmpty());
}

TEST(DateFormatterTest, EveryLocaleThatTheToolkitKnowsHasADate) {
    for (const auto& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry))
        EXPECT_FALSE(DateFormatter(locale).string(someMoment).isEmpty()) << locale.name().toStdString();
}

} // namespace
} // namespace kestrova
