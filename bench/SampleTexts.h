#pragma once

#include <QString>
#include <QStringList>

namespace kestrova::bench {

/// How long a sample text is, in characters; none of them lies outside the basic plane.
inline constexpr qsizetype sampleTextLength = 400;

/// The text with that number: Korean for even numbers, English for odd ones, the same in every run. No two
/// are alike.
QString sampleText(int number);

/// Words to look for. Of a thousand texts two hold a rare word, one each language; every text of a language
/// holds its frequent one.
namespace SampleWord {
inline const QString rareKorean = QStringLiteral("은하수");
inline const QString rareEnglish = QStringLiteral("Quicksilver");
inline const QString frequentKorean = QStringLiteral("그리고");
inline const QString frequentEnglish = QStringLiteral("the");
} // namespace SampleWord

} // namespace kestrova::bench
