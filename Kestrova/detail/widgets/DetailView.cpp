#include "Kestrova/detail/widgets/DetailView.h"

#include "Kestrova/detail/widgets/ColorDetail.h"
#include "Kestrova/detail/widgets/FileDetail.h"
#include "Kestrova/detail/widgets/ImageDetail.h"
#include "Kestrova/detail/widgets/InfoSectionView.h"
#include "Kestrova/detail/widgets/TextDetail.h"
#include "Kestrova/detail/widgets/URLDetail.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"
#include "KestrovaCore/ClipboardItem.h"

#include <algorithm>
#include <utility>

namespace kestrova {

DetailView::DetailView(const DetailSurroundings& surroundings, QWidget* parent)
    : QScrollArea(parent),
      m_surroundings(surroundings),
      m_info({.mainQueue = surroundings.mainQueue,
              .workspace = surroundings.workspace,
              .formatters = surroundings.formatters},
             [this] {
                 m_infoView->render(m_info.rows(), m_theme);
                 arrange();
             }),
      m_scrollBar(new ThinScrollBar),
      m_page(new QWidget),
      m_infoView(new InfoSectionView(m_page)) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(m_scrollBar);
    setWidget(m_page);
    // The ground is the panel's.
    viewport()->setAutoFillBackground(false);
    m_page->setAutoFillBackground(false);
    m_infoView->hide();
}

DetailView::Kind DetailView::kindOf(ClipboardItemType type) {
    switch (type) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return Kind::text;
    case ClipboardItemType::image:
        return Kind::image;
    case ClipboardItemType::file:
        return Kind::file;
    case ClipboardItemType::url:
        return Kind::url;
    case ClipboardItemType::color:
        return Kind::color;
    }
    Q_UNREACHABLE();
}

ContentView& DetailView::contentView(Kind kind) {
    auto& view = m_contentViews[kind];
    if (view)
        return *view;
    switch (kind) {
    case Kind::text:
        view = new TextDetail(m_page);
        break;
    case Kind::image:
        view = new ImageDetail(m_surroundings.mainQueue, m_surroundings.decoder, m_page);
        break;
    case Kind::file:
        view = new FileDetail(m_surroundings.workspace, m_surroundings.formatters, m_page);
        break;
    case Kind::url:
        view = new URLDetail({.mainQueue = m_surroundings.mainQueue,
                              .cache = m_surroundings.linkPreviews,
                              .defaults = m_surroundings.defaults},
                             m_page);
        break;
    case Kind::color:
        view = new ColorDetail(m_surroundings.onCopy, m_page);
        break;
    }
    view->onHeightChange = [this] { arrange(); };
    return *view;
}

void DetailView::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    const bool isNewTheme = std::exchange(m_theme, theme) != theme;
    if (isNewTheme)
        m_scrollBar->setThumbColor(theme.scrollThumb);
    const bool isOther = item.owner_before(m_item) || m_item.owner_before(item);
    m_item = item;
    m_showsItem = item != nullptr;
    auto* const former = std::exchange(m_content, item ? &contentView(kindOf(item->type())) : nullptr);
    if (former && former != m_content) {
        former->forget();
        former->hide();
    }
    if (!item) {
        m_info.forget();
        m_infoView->render({}, theme);
        m_infoView->hide();
        return;
    }
    m_content->render(item, theme);
    if (m_info.show(*item) || isNewTheme)
        m_infoView->render(m_info.rows(), theme);
    m_infoView->show();
    m_content->show();
    arrange();
    if (isOther)
        verticalScrollBar()->setValue(0);
}

void DetailView::forgetDeleted() {
    if (const auto item = m_item.lock(); m_showsItem && (!item || item->isDeleted()))
        render(nullptr, m_theme);
}

void DetailView::arrange() {
    if (!m_content)
        return;
    const auto room = maximumViewportSize();
    int width = room.width();
    if (m_content->leastHeight(width) + m_infoView->heightForWidth(width) > room.height())
        width -= m_scrollBar->sizeHint().width();
    const int infoHeight = m_infoView->heightForWidth(width);
    const int contentHeight = std::max(m_content->leastHeight(width), room.height() - infoHeight);
    m_content->setGeometry(0, 0, width, contentHeight);
    m_infoView->setGeometry(0, contentHeight, width, infoHeight);
    m_page->resize(width, contentHeight + infoHeight);
}

void DetailView::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    arrange();
}

} // namespace kestrova
