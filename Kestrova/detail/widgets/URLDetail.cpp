#include "Kestrova/detail/widgets/URLDetail.h"

#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/detail/SameText.h"
#include "Kestrova/detail/widgets/WrappedText.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/MainQueue.h"
#include "Platform/UserDefaults.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {
namespace {

constexpr int imageHeight = 220;
constexpr double imageGap = 12;
constexpr double radius = 8;
constexpr int faviconEdge = 16;
constexpr double globeSize = 11;
constexpr double siteGap = 6;
constexpr double lineSpacing = 4;
constexpr double siteSize = 12;
constexpr double titleSize = 14;
constexpr double addressSize = 12;
constexpr int mostSiteLines = 1;
constexpr int mostTitleLines = 3;
constexpr int mostAddressLines = 12;
constexpr qsizetype longestSpoken = 300;

/// An entry that holds nothing is kept of a page that could not be read.
bool tellsOfPage(const LinkPreviewCache::Preview& preview) {
    const auto isText = [](const std::optional<QString>& text) { return text && !text->isEmpty(); };
    return isText(preview.title) || isText(preview.siteName) || !preview.image.isNull() ||
           !preview.favicon.isNull();
}

} // namespace

/// What a task calls when the page has been fetched.
class URLDetail::LookUp {
public:
    explicit LookUp(std::function<void()> onFetched) : m_onFetched(std::move(onFetched)) {}

    /// Asks the cache on the next turn, unless another link is shown by then.
    static QCoro::Task<> start(std::weak_ptr<LookUp> lookUp, MainQueue& mainQueue, LinkPreviewCache& cache,
                               QUrl url) {
        co_await mainQueue.nextTurn();
        if (lookUp.expired())
            co_return;
        co_await cache.fetch(url);
        if (const auto held = lookUp.lock())
            held->m_onFetched();
    }

private:
    std::function<void()> m_onFetched;
};

struct URLDetail::Texts {
    std::optional<WrappedText> site;
    std::optional<WrappedText> title;
    WrappedText address;

    double siteHeight() const { return site ? std::max<double>(faviconEdge, site->height()) : 0; }
    double height() const {
        return (site ? siteHeight() + lineSpacing : 0) + (title ? title->height() + lineSpacing : 0) +
               address.height();
    }
};

URLDetail::URLDetail(const Surroundings& surroundings, QWidget* parent)
    : ContentView(parent), m_surroundings(surroundings) {
    setAccessibleRole(*this, QAccessible::StaticText);
}

URLDetail::~URLDetail() = default;

void URLDetail::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) != theme) {
        m_texts.reset();
        update();
    }
    if (m_address.isNull() || !isSameText(item->content(), m_address)) {
        m_address = item->content();
        m_url = linkOf(*item);
        m_lookUp.reset();
        showPreview();
    }
    lookUp();
}

void URLDetail::forget() {
    m_address = QString();
    m_url.reset();
    m_lookUp.reset();
    showPreview();
}

void URLDetail::lookUp() {
    const bool isWanted = m_surroundings.defaults.boolean(QStringLiteral("autoLinkPreview")).value_or(true);
    if (!m_url || m_lookUp || !isWanted || !isVisible())
        return;
    m_lookUp = std::make_shared<LookUp>([this] {
        showPreview();
        if (onHeightChange)
            onHeightChange();
    });
    LookUp::start(m_lookUp, m_surroundings.mainQueue, m_surroundings.cache, *m_url);
}

void URLDetail::showPreview() {
    m_preview = m_url ? m_surroundings.cache.cachedPreview(*m_url) : std::nullopt;
    if (m_preview && !tellsOfPage(*m_preview))
        m_preview.reset();
    m_fitted = {};
    m_texts.reset();
    auto spoken = m_address.left(longestSpoken);
    if (m_preview && m_preview->title)
        spoken.prepend(m_preview->title->left(longestSpoken) + QStringLiteral(", "));
    setSpokenName(*this, spoken);
    update();
}

void URLDetail::showEvent(QShowEvent*) {
    lookUp();
}

const URLDetail::Texts& URLDetail::texts(int width) const {
    if (m_texts && m_textsWidth == width)
        return *m_texts;
    const double room = width - 2 * padding;
    m_textsWidth = width;
    m_texts =
        std::make_unique<Texts>(Texts{.site = {},
                                      .title = {},
                                      .address = WrappedText(m_address, {.font = interfaceFont(addressSize),
                                                                         .width = room,
                                                                         .mostLines = mostAddressLines,
                                                                         .elideMode = Qt::ElideMiddle})});
    auto& texts = *m_texts;
    if (!m_preview)
        return texts;
    const auto siteName = m_preview->siteName.value_or(QString());
    texts.site.emplace(siteName.isEmpty() ? m_url->host() : siteName,
                       WrappedText::Form{.font = interfaceFont(siteSize),
                                         .width = room - faviconEdge - siteGap,
                                         .mostLines = mostSiteLines});
    if (m_preview->title && !m_preview->title->isEmpty())
        texts.title.emplace(*m_preview->title,
                            WrappedText::Form{.font = interfaceFont(titleSize, QFont::DemiBold),
                                              .width = room,
                                              .mostLines = mostTitleLines});
    return texts;
}

int URLDetail::leastHeight(int width) const {
    const double image = m_preview && !m_preview->image.isNull() ? imageHeight + imageGap : 0;
    return static_cast<int>(std::ceil(image + texts(width).height())) + 2 * padding;
}

void URLDetail::paintEvent(QPaintEvent*) {
    if (m_address.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    double top = padding;
    if (m_preview && !m_preview->image.isNull()) {
        const QRectF place(padding, top, width() - 2 * padding, imageHeight);
        const auto pixels = (place.size() * devicePixelRatioF()).toSize();
        if (m_fitted.size() != pixels)
            m_fitted = filling(m_preview->image, pixels);
        QPainterPath outline;
        outline.addRoundedRect(place, radius, radius);
        painter.setClipPath(outline);
        painter.drawImage(place, m_fitted);
        painter.setClipping(false);
        top += imageHeight + imageGap;
    }
    const auto& shown = texts(width());
    if (shown.site) {
        const QRectF icon(padding, top + (shown.siteHeight() - faviconEdge) / 2, faviconEdge, faviconEdge);
        if (!m_preview->favicon.isNull())
            painter.drawImage(icon, m_preview->favicon);
        else
            Symbol(QStringLiteral("globe"))
                .paint(painter, icon, interfaceLength(Symbol::edgeFor(globeSize)), m_theme.secondaryText);
        painter.setPen(m_theme.text);
        shown.site->paint(painter, {padding + faviconEdge + siteGap,
                                    top + (shown.siteHeight() - shown.site->height()) / 2});
        top += shown.siteHeight() + lineSpacing;
    }
    if (shown.title) {
        painter.setPen(m_theme.text);
        shown.title->paint(painter, {padding, top});
        top += shown.title->height() + lineSpacing;
    }
    painter.setPen(m_theme.secondaryText);
    shown.address.paint(painter, {padding, top});
}

} // namespace kestrova
