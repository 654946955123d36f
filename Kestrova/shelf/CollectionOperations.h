#pragma once

#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "KestrovaCore/LiveQuery.h"
#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreError.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

class KovaCollection;
class ModelContext;

/// What the person does to collections: the sheet in which one is made or changed, and the deletion of one.
/// Main thread only.
class CollectionOperations {
public:
    /// Ends with a save, of which it is the result.
    using Change = std::function<Result<Done, StoreError>()>;
    /// What it has of the shelf. All of it outlives the object.
    struct Surroundings {
        ModelContext& context;
        /// A query of that context.
        const CollectionQuery& all;
        /// Of the shelf's state: which sheet is open, and what is looked at.
        std::optional<CollectionEditSheet::Mode>& sheetMode;
        CollectionFilter& filter;
        /// Runs a change on behalf of the shelf.
        std::function<void(const Change&)> changeAndSave;
    };

    explicit CollectionOperations(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {}

    /// To be called when the mode has changed: makes the sheet for it, or lets it go.
    void openSheet();
    /// The open sheet with what has been typed in it, or null.
    CollectionEditSheet* sheet() const { return m_sheet.get(); }
    /// The items stay in the history.
    void deleteCollection(const std::shared_ptr<KovaCollection>& collection);
    /// All collections, in the order in which they are to stand.
    void setOrder(const std::vector<std::shared_ptr<KovaCollection>>& order);

private:
    void submit(const CollectionEditSheet::Mode& mode, const QString& name,
                const std::optional<QString>& colorHex);
    void create(const QString& name, const std::optional<QString>& colorHex);

    Surroundings m_surroundings;
    std::unique_ptr<CollectionEditSheet> m_sheet;
};

} // namespace kestrova
