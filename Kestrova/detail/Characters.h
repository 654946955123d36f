#pragma once

#include <QString>
#include <QStringView>

namespace kestrova {

// Characters as a person counts them, whatever number of units each of them takes.

/// The beginning of a text, at most `count` characters long. A text of megabytes costs no more than a short
/// one.
QStringView firstCharacters(QStringView text, qsizetype count);

/// Counts the characters of a text, a slice at a time, so that the count of a huge one can be given up. Any
/// thread.
class CharacterCount {
public:
    explicit CharacterCount(QString text) : m_text(std::move(text)) {}

    /// Goes on by about `units` UTF-16 units. Within a character without end too it comes back after some
    /// hundred thousand.
    void advance(qsizetype units);
    bool isComplete() const { return m_position == m_text.size(); }
    /// Of what has been passed so far.
    qsizetype value() const { return m_count; }

private:
    void passPlain(qsizetype end);
    void passWoven();

    QString m_text;
    /// Where a character begins, unless it is within one that has no end in sight.
    qsizetype m_position = 0;
    /// So much from there on belongs to the character that it is within.
    qsizetype m_known = 0;
    qsizetype m_count = 0;
};

/// All of them, at once.
qsizetype characterCount(const QString& text);

} // namespace kestrova
