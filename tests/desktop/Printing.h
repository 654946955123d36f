#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

/// Readable values in the failure messages of GoogleTest, which finds these by argument-dependent look-up.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* stream) {
    *stream << "[" << list.join(QStringLiteral(" | ")).toStdString() << "]";
}
inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    constexpr qsizetype kShown = 200;
    *stream << bytes.size() << " bytes: " << bytes.left(kShown).toStdString();
}
