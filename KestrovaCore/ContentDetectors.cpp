#include "KestrovaCore/ContentDetectors.h"

#include <QRegularExpression>
#include <QString>
#include <QTextBoundaryFinder>
#include <QUrl>

#include <algorithm>

namespace kestrova::ContentDetectors {
namespace {

/// Counts characters as a person sees them. The segmentation walks all that it is given, so it is given a
/// piece that grows only as long as the answer is open: a text of megabytes costs no more than a short one.
bool hasMoreCharactersThan(qsizetype limit, QStringView text) {
    for (qsizetype looked = 2 * (limit + 1);; looked *= 4) {
        const auto piece = text.first(std::min(looked, text.size()));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, piece.data(), piece.size());
        qsizetype count = 0;
        while (count <= limit && finder.toNextBoundary() != -1)
            ++count;
        if (count > limit || piece.size() == text.size())
            return count > limit;
    }
}

QRegularExpression
compiled(const QString& pattern,
         QRegularExpression::PatternOptions options = QRegularExpression::NoPatternOption) {
    QRegularExpression expression(pattern, options);
    if (!expression.isValid())
        qFatal("A pattern of the content detectors does not compile.");
    return expression;
}

} // namespace

bool isColor(QStringView text) {
    constexpr qsizetype longestColor = 40;
    const auto candidate = text.trimmed();
    if (candidate.isEmpty() || hasMoreCharactersThan(longestColor, candidate))
        return false;
    static const auto hexadecimal =
        compiled(QStringLiteral("^#(?:[0-9A-Fa-f]{3}|[0-9A-Fa-f]{6}|[0-9A-Fa-f]{8})$"));
    static const auto functional = compiled(QStringLiteral(R"(^(?:rgb|rgba|hsl|hsla)\([^)]+\)$)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return hexadecimal.match(candidate).hasMatch() || functional.match(candidate).hasMatch();
}

bool isURL(QStringView text) {
    constexpr qsizetype longestURL = 2000;
    const auto candidate = text.trimmed();
    if (candidate.isEmpty())
        return false;
    // Before anything that costs more: the first blank ends it for ordinary prose.
    for (const QChar character : candidate)
        if (character.isSpace())
            return false;
    if (hasMoreCharactersThan(longestURL, candidate))
        return false;
    // People copy addresses with a stray percent sign or with letters that are not encoded; they open all the
    // same.
    const QUrl url(candidate.toString(), QUrl::TolerantMode);
    return url.isValid() && (url.scheme() == u"http" || url.scheme() == u"https") && !url.host().isEmpty();
}

} // namespace kestrova::ContentDetectors
