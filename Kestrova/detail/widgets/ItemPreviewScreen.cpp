#include "Kestrova/detail/widgets/ItemPreviewScreen.h"

#include "Kestrova/detail/widgets/DetailBackBar.h"
#include "Kestrova/detail/widgets/DetailView.h"
#include "Kestrova/detail/widgets/FastTextView.h"
#include "Kestrova/detail/widgets/ScrolledPicture.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "KestrovaCore/ClipboardItem.h"

#include <utility>

namespace kestrova {
namespace {

/// As high as the picture is, with that width.
ItemPreviewView::Decode decodeWith(PictureDecoder& decoder) {
    return [&decoder](const StoredImageData& bytes, int widthInPixels, ItemPreviewView::Decoded done) {
        decoder.decode(bytes, {widthInPixels, QWIDGETSIZE_MAX}, PictureDecoder::Fit::within, std::move(done));
    };
}

} // namespace

ItemPreviewScreen::ItemPreviewScreen(const std::shared_ptr<ClipboardItem>& item,
                                     const DetailSurroundings& surroundings, std::function<void()> onClose,
                                     QWidget* parent)
    : DetailScreen(parent),
      m_view(item, decodeWith(surroundings.decoder), std::move(onClose)),
      m_close(new SheetButton(SheetButton::Role::cancel, this)),
      m_content(makeContent(surroundings)) {
    m_close->setText(QStringLiteral("Close"));
    m_close->setCapsule({{}, QStringLiteral("Esc")});
    m_close->onTap = [this] { m_view.close(); };
    auto* const bar = new DetailBackBar(m_view.title(), m_close, this);
    bar->onBack = [this] { m_view.close(); };
    setParts(*bar, *m_content.widget, m_content.sidePadding);
}

ItemPreviewScreen::Content ItemPreviewScreen::makeContent(const DetailSurroundings& surroundings) {
    switch (m_view.item->type()) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return makeText();
    case ClipboardItemType::image:
        return makePicture();
    case ClipboardItemType::file:
    case ClipboardItemType::url:
    case ClipboardItemType::color:
        return makeDetail(surroundings);
    }
    Q_UNREACHABLE();
}

ItemPreviewScreen::Content ItemPreviewScreen::makeText() {
    auto* const text = new FastTextView(this);
    text->setTakesKeyboard(true);
    return {.widget = text,
            .sidePadding = textPadding,
            .render = [text, item = m_view.item](const ShelfTheme& theme) {
                text->render(item->content(), theme);
            }};
}

ItemPreviewScreen::Content ItemPreviewScreen::makePicture() {
    auto* const picture = new ScrolledPicture(this);
    picture->onResize = [this, picture] { m_view.viewAppears(picture->availableWidth()); };
    m_view.onRender = [this, picture] { picture->render(m_view.decodedImage); };
    return {.widget = picture, .render = [picture](const ShelfTheme& theme) { picture->setTheme(theme); }};
}

ItemPreviewScreen::Content ItemPreviewScreen::makeDetail(const DetailSurroundings& surroundings) {
    auto* const detail = new DetailView(surroundings, this);
    // It has a padding of its own.
    return {.widget = detail,
            .sidePadding = 0,
            .render = [detail, item = m_view.item](const ShelfTheme& theme) { detail->render(item, theme); }};
}

void ItemPreviewScreen::setTheme(const ShelfTheme& theme) {
    DetailScreen::setTheme(theme);
    m_close->setTheme(theme);
    m_content.render(theme);
}

} // namespace kestrova
