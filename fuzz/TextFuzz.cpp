#include "KestrovaCore/ContentDetectors.h"
#include "KestrovaCore/FoldedText.h"

#include <QString>

using namespace kestrova;

/// Copied text on its way through the detectors and the search.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (ContentDetectors::isColor(text) && ContentDetectors::isURL(text))
        qFatal("A text is both a colour and an address.");

    const QByteArray folded = foldedForSearch(text);
    if (foldedForSearch(QString::fromUtf8(folded)) != folded)
        qFatal("What is folded folds to something else.");
    const SearchTerm whole(text);
    if (!whole.isEmpty() && !whole.isIn(folded))
        qFatal("A text is not found in itself.");
    return 0;
}
