#include "Kestrova/detail/LineEnds.h"

namespace kestrova {
namespace {

// With these the toolkit tells the parts of its documents apart.
constexpr QChar beginningOfFrame(0xfdd0);
constexpr QChar endOfFrame(0xfdd1);

} // namespace

std::optional<QString> commonLineEnd(QStringView text) {
    QStringView common;
    for (qsizetype position = 0; position < text.size(); ++position) {
        const auto character = text[position];
        if (character == QChar::ParagraphSeparator || character == beginningOfFrame ||
            character == endOfFrame)
            return std::nullopt;
        if (character != u'\n' && character != u'\r')
            continue;
        const auto rest = text.sliced(position);
        const auto lineEnd = rest.first(rest.startsWith(u"\r\n") ? 2 : 1);
        if (!common.isEmpty() && common != lineEnd)
            return std::nullopt;
        common = lineEnd;
        position += lineEnd.size() - 1;
    }
    return common.isEmpty() ? QStringLiteral("\n") : common.toString();
}

} // namespace kestrova
