#include "Kestrova/shelf/CollectionOperations.h"

#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"

namespace kestrova {

void CollectionOperations::openSheet() {
    m_sheet.reset();
    const auto& mode = m_surroundings.sheetMode;
    if (!mode)
        return;
    m_sheet = std::make_unique<CollectionEditSheet>(
        *mode,
        [this, opened = *mode](const QString& name, const std::optional<QString>& colorHex) {
            submit(opened, name, colorHex);
        },
        [this] { m_surroundings.sheetMode.reset(); });
}

void CollectionOperations::submit(const CollectionEditSheet::Mode& mode, const QString& name,
                                  const std::optional<QString>& colorHex) {
    const auto& edited = mode.collection();
    if (!edited) {
        create(name, colorHex);
    } else if (!edited->isDeleted()) {
        m_surroundings.changeAndSave([&] {
            edited->setName(name);
            edited->setColorHex(colorHex);
            return m_surroundings.context.save();
        });
    }
    m_surroundings.sheetMode.reset();
}

void CollectionOperations::create(const QString& name, const std::optional<QString>& colorHex) {
    const auto& all = m_surroundings.all.results();
    const auto created = std::make_shared<KovaCollection>(name, all.empty() ? 1 : all.back()->sortOrder() + 1,
                                                          std::nullopt, colorHex);
    m_surroundings.changeAndSave([&] {
        m_surroundings.context.insert(created);
        return m_surroundings.context.save();
    });
    // Not before: the save gives it another identifier.
    m_surroundings.filter = CollectionFilter::collection(created->id());
}

void CollectionOperations::deleteCollection(const std::shared_ptr<KovaCollection>& collection) {
    if (m_surroundings.filter == CollectionFilter::collection(collection->id()))
        m_surroundings.filter = CollectionFilter::all();
    m_surroundings.changeAndSave([&] {
        m_surroundings.context.remove(*collection);
        return m_surroundings.context.save();
    });
}

void CollectionOperations::setOrder(const std::vector<std::shared_ptr<KovaCollection>>& order) {
    m_surroundings.changeAndSave([&] {
        std::int64_t place = 0;
        for (const auto& collection : order)
            collection->setSortOrder(place++);
        return m_surroundings.context.save();
    });
}

} // namespace kestrova
