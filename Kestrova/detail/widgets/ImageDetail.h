#pragma once

#include "Kestrova/detail/widgets/ContentView.h"
#include "Platform/MainQueue.h"

#include <QImage>

#include <cstdint>
#include <optional>

namespace kestrova {

class PictureDecoder;

/// A picture in the size that there is room for. It comes a moment later, so that the selection can run past
/// it; without one the ground stays empty.
class ImageDetail final : public ContentView {
public:
    /// Both outlive it.
    ImageDetail(MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);

    void render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) override;
    void forget() override;
    int leastHeight(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect ground() const;
    void requestPicture();
    void readPicture();
    void arrived(const QImage& picture, std::uint64_t wish);

    MainQueue& m_mainQueue;
    PictureDecoder& m_decoder;
    // What is out of sight must not keep an item that is deleted.
    std::weak_ptr<ClipboardItem> m_item;
    std::optional<std::int64_t> m_byteCount;
    ShelfTheme m_theme;
    QImage m_picture;
    ScheduledBlock m_read;
    /// Of the picture that is waited for.
    std::uint64_t m_wish = 0;
    bool m_isDecoding = false;
    /// Another picture or size has been asked for since.
    bool m_isOutdated = false;
};

} // namespace kestrova
