#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;
class StoredImageData;

/// The larger look at an item. Main thread only.
class ItemPreviewView {
public:
    using Decoded = std::function<void(const QImage&)>;
    /// Makes a picture that is no wider than so many pixels, nor than it was, and hands it over in a later
    /// turn; a null one if the bytes are none.
    using Decode = std::function<void(const StoredImageData& bytes, int widthInPixels, Decoded done)>;

    ItemPreviewView(std::shared_ptr<ClipboardItem> previewed, Decode decode,
                    std::function<void()> onCloseScreen);

    QString title() const;
    bool showsPicture() const;
    /// The view has appeared, or has become wider or narrower. A picture is made for that many pixels; until
    /// then the one before is shown.
    void viewAppears(int widthInPixels);
    void close() const { onClose(); }

    /// The moment to paint.
    std::function<void()> onRender;

    const std::shared_ptr<ClipboardItem> item;
    std::function<void()> onClose;
    /// Absent while it is being decoded; null if the item has no picture that can be read.
    std::optional<QImage> decodedImage;

private:
    void show(const QImage& picture);

    Decode m_decode;
    int m_width = 0;
    // Pictures may arrive after this has gone.
    std::shared_ptr<int> m_wish = std::make_shared<int>(0);
};

} // namespace kestrova
