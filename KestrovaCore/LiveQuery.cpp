#include "KestrovaCore/LiveQuery.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace kestrova {

bool standsBefore(const ClipboardItem& a, const ClipboardItem& b) {
    return std::tuple(a.createdAt(), a.id()) > std::tuple(b.createdAt(), b.id());
}

bool standsBefore(const KovaCollection& a, const KovaCollection& b) {
    return std::tuple(a.sortOrder(), a.createdAt(), a.id()) <
           std::tuple(b.sortOrder(), b.createdAt(), b.id());
}

namespace {

constexpr auto byPlace = [](const auto& a, const auto& b) { return standsBefore(*a, *b); };

template<typename Records, typename Record>
auto placeOf(Records& records, const Record& record) {
    return std::ranges::find_if(records, [&](const auto& each) { return each.get() == &record; });
}

} // namespace

template<typename Record>
LiveQuery<Record>::LiveQuery(ModelContext& context) : m_context(context), m_results(context.all<Record>()) {
    m_context.queries<Record>().push_back(this);
}

template<typename Record>
LiveQuery<Record>::~LiveQuery() {
    std::erase(m_context.queries<Record>(), this);
}

template<typename Record>
void LiveQuery<Record>::add(std::shared_ptr<Record> record) {
    const auto place = std::ranges::upper_bound(m_results, record, byPlace);
    // A query that is made while others are told of a row has it already.
    if (place == m_results.begin() || *std::prev(place) != record)
        m_results.insert(place, std::move(record));
}

template<typename Record>
void LiveQuery<Record>::remove(const Record& record) {
    const auto place = placeOf(m_results, record);
    if (place != m_results.end())
        m_results.erase(place);
}

template<typename Record>
void LiveQuery<Record>::move(const Record& record) {
    const auto place = placeOf(m_results, record);
    if (place == m_results.end())
        return;
    const bool fitsBefore = place == m_results.begin() || !standsBefore(record, **std::prev(place));
    const bool fitsBehind = std::next(place) == m_results.end() || !standsBefore(**std::next(place), record);
    if (fitsBefore && fitsBehind)
        return;
    auto moved = std::move(*place);
    m_results.erase(place);
    add(std::move(moved));
}

template<typename Record>
bool LiveQuery<Record>::holds(const Record& record) const {
    return placeOf(m_results, record) != m_results.end();
}

template class LiveQuery<ClipboardItem>;
template class LiveQuery<KovaCollection>;

} // namespace kestrova
