#pragma once

#include "KestrovaCore/Timestamp.h"

#include <QLocale>
#include <QString>

#include <memory>

namespace kestrova {

/// Moments as people read them: the day in the locale's medium style and the time of day in its short style,
/// in the computer's time zone as it is when one asks. Main thread only.
class DateFormatter {
public:
    explicit DateFormatter(const QLocale& locale = {});
    DateFormatter(const DateFormatter&) = delete;
    DateFormatter& operator=(const DateFormatter&) = delete;
    ~DateFormatter();

    QString string(Timestamp moment) const;

private:
    struct Format;

    QLocale m_locale;
    std::unique_ptr<Format> m_format;
};

} // namespace kestrova
