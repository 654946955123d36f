#pragma once

#include "KestrovaCore/RecordValues.h"

#include <functional>
#include <memory>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;
class ModelContext;

/// A list of records that follows a context: its unsaved changes at once, the saves of others when they are
/// merged. Items stand newest first, collections by `sortOrder`. It must go before its context. Main thread
/// only.
template<typename Record>
class LiveQuery {
public:
    explicit LiveQuery(ModelContext& context);
    LiveQuery(const LiveQuery&) = delete;
    LiveQuery& operator=(const LiveQuery&) = delete;
    ~LiveQuery();

    const std::vector<std::shared_ptr<Record>>& results() const { return m_results; }

    /// Called after `results`, or a field of one of them, has changed.
    std::function<void()> onChange;

private:
    friend class ModelContext;

    void add(std::shared_ptr<Record> record);
    void remove(const Record& record);
    /// Puts the record where its fields now say.
    void move(const Record& record);
    bool holds(const Record& record) const;
    void changed() const {
        // A copy: the query may go while it is told.
        if (const auto tell = onChange)
            tell();
    }

    ModelContext& m_context;
    std::vector<std::shared_ptr<Record>> m_results;
};

using ItemQuery = LiveQuery<ClipboardItem>;
using CollectionQuery = LiveQuery<KovaCollection>;

extern template class LiveQuery<ClipboardItem>;
extern template class LiveQuery<KovaCollection>;

/// The order of the history: newest first, among items of one moment the larger identifier first.
bool standsBefore(const ClipboardItem& a, const ClipboardItem& b);
/// The shown order of collections: `sortOrder` ascending, among equal ones the older first.
bool standsBefore(const KovaCollection& a, const KovaCollection& b);

} // namespace kestrova
