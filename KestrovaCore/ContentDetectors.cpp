#include "KestrovaCore/ContentDetectors.h"

#include <QRegularExpression>
#include <QString>
#include <QTextBoundaryFinder>

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

// An address is taken apart by the generic syntax of RFC 3986, section 3, and not by a URL class: that would
// judge the host's form, and any host will do. Nor does it matter what stands behind the host: people copy
// addresses with stray percent signs and letters that are not encoded, which open all the same.

bool hasWebScheme(QStringView text) {
    const auto scheme = text.first(std::max(text.indexOf(u':'), qsizetype{0}));
    return scheme.compare(u"http", Qt::CaseInsensitive) == 0 ||
           scheme.compare(u"https", Qt::CaseInsensitive) == 0;
}

/// What stands between "//" and the path, the query, the fragment or the end; empty if there is none.
QStringView authorityOf(QStringView text) {
    const auto rest = text.sliced(text.indexOf(u':') + 1);
    if (!rest.startsWith(u"//"))
        return {};
    const auto authority = rest.sliced(2);
    const auto end = std::ranges::find_if(authority, [](QChar character) {
        return character == u'/' || character == u'?' || character == u'#';
    });
    return authority.first(end - authority.begin());
}

bool hasHost(QStringView authority) {
    const auto hostAndPort = authority.sliced(authority.lastIndexOf(u'@') + 1);
    // The colons of an address in brackets are its own.
    const auto colon = hostAndPort.indexOf(u':', std::max(hostAndPort.indexOf(u']'), qsizetype{0}));
    const auto host = colon < 0 ? hostAndPort : hostAndPort.first(colon);
    const auto port = colon < 0 ? QStringView() : hostAndPort.sliced(colon + 1);
    const bool isBracketed = host.startsWith(u'[');
    if (isBracketed != host.endsWith(u']') || host.size() <= (isBracketed ? 2 : 0))
        return false;
    return std::ranges::all_of(port, [](QChar character) { return character >= u'0' && character <= u'9'; });
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
    return hasWebScheme(candidate) && hasHost(authorityOf(candidate));
}

} // namespace kestrova::ContentDetectors
