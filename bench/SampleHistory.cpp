#include "bench/SampleHistory.h"

#include "bench/SamplePictures.h"
#include "bench/SampleTexts.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaStore.h"
#include "KestrovaCore/ModelContext.h"

#include <algorithm>
#include <stdexcept>

namespace kestrova::bench {
namespace {

constexpr Timestamp firstMoment{std::chrono::milliseconds{1'700'000'000'000}};

std::shared_ptr<ClipboardItem> makeItem(const QString& content, ClipboardItemType type, int number) {
    return std::make_shared<ClipboardItem>(content, type, QStringLiteral("org.example.editor"),
                                           firstMoment + std::chrono::seconds{number}, false,
                                           ItemSource::clipboard);
}

void save(ModelContext& context) {
    if (const auto saved = context.save(); !saved)
        throw std::runtime_error("the sample history cannot be saved: " +
                                 saved.error().message.toStdString());
}

} // namespace

FilledStore fillStore(const QString& directory, const SampleHistory& history) {
    KovaStore store(directory);
    const auto container = store.container();
    if (!container)
        throw std::runtime_error("no store: " + container.error().message.toStdString());
    ModelContext context(*container.value());
    FilledStore filled{.file = store.filePath()};

    const auto pictures = samplePictures(std::min(history.pictures, distinctPictures), history.pictureSize);
    for (int i = 0; i < history.pictures; ++i) {
        const auto& png = pictures[static_cast<std::size_t>(i) % pictures.size()];
        const auto item = makeItem(QStringLiteral("Image"), ClipboardItemType::image, i);
        item->setImageData(png);
        // No two rows look alike, so that a list that moves shows it.
        item->setWidth(history.pictureSize.width() + i);
        item->setHeight(history.pictureSize.height());
        context.insert(item);
        save(context);
        filled.pictureBytes += png.size();
    }
    for (int i = 0; i < history.texts; ++i) {
        const QString text = sampleText(i);
        context.insert(makeItem(text, ClipboardItemType::text, history.pictures + i));
        filled.textBytes += text.toUtf8().size();
    }
    save(context);
    return filled;
}

FilledStore fillStore(const QString& directory, const QString& text) {
    KovaStore store(directory);
    const auto container = store.container();
    if (!container)
        throw std::runtime_error("no store: " + container.error().message.toStdString());
    ModelContext context(*container.value());
    context.insert(makeItem(text, ClipboardItemType::text, 0));
    save(context);
    return {.file = store.filePath(), .textBytes = text.toUtf8().size()};
}

} // namespace kestrova::bench
