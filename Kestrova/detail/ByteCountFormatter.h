#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

namespace kestrova {

/// Sizes of files as people read them, in steps of a thousand: whole kilobytes, megabytes with at most one
/// decimal, gigabytes with at most two, such as "12 KB", "1.2 MB", "3 GB". Nothing is "Zero KB", and what
/// would be less than half a kilobyte is still one. Numbers are written as the locale writes them, with no
/// zeros at the end; the unit is the smallest of which there are less than a thousand, once
/// rounded.
class ByteCountFormatter {
public:
    explicit ByteCountFormatter(QLocale locale = {}) : m_locale(std::move(locale)) {}

    /// A negative count, as only a broken store has, is taken for nothing.
    QString string(std::int64_t bytes) const;

private:
    QLocale m_locale;
};

} // namespace kestrova
