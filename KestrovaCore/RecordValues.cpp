#include "KestrovaCore/RecordValues.h"

#include <algorithm>

namespace kestrova {

std::shared_ptr<const ClipboardItemValues>
withoutMembership(const std::shared_ptr<const ClipboardItemValues>& values, CollectionID collection) {
    if (!values->collections ||
        std::ranges::find(*values->collections, collection) == values->collections->end())
        return values;
    auto without = std::make_shared<ClipboardItemValues>(*values);
    std::erase(*without->collections, collection);
    return without;
}

bool matches(const ClipboardItemValues& values, const SearchTerm& term) {
    return term.isIn(values.foldedContent.of(values.content)) ||
           (values.ocrText && term.isIn(values.foldedOcrText.of(*values.ocrText)));
}

} // namespace kestrova
