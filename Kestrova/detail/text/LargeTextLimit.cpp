#include "Kestrova/detail/text/LargeTextLimit.h"

namespace kestrova {
namespace {

constexpr qsizetype longestText = 100'000;
constexpr qsizetype longestParagraph = 10'000;

bool isLineEnd(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator;
}

} // namespace

bool needsLargeTextControl(QStringView text) {
    if (text.size() > longestText)
        return true;
    qsizetype paragraphStart = 0;
    for (qsizetype position = 0; position < text.size(); ++position) {
        if (isLineEnd(text[position]))
            paragraphStart = position + 1;
        else if (position - paragraphStart >= longestParagraph)
            return true;
    }
    return false;
}

} // namespace kestrova
