#include "Platform/x11/CapturedPictures.h"

#include "Platform/ScreenContent.h"
#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/KeptContents.h"
#include "Platform/x11/PixelReader.h"
#include "Platform/x11/RootBackground.h"
#include "Platform/x11/RootRect.h"
#include "Platform/x11/SceneComposition.h"
#include "Platform/x11/WindowContents.h"
#include "Platform/x11/WindowList.h"
#include "Platform/x11/XcbReply.h"

#include <QMargins>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

namespace {

using Code = ScreenContentError::Code;

/// The area of the screen and, where it reaches beyond, transparency.
QImage readScreen(const CaptureConnection& connection, const QRect& area, PixelReader& reader) {
    const auto& screen = connection.screen();
    const auto inside = area & rootRect(connection.get(), screen.root);
    auto picture = reader.read(screen.root, screen.root_depth, inside);
    if (!picture.isNull())
        return fitted(picture, inside.topLeft() - area.topLeft(), area.size());
    if (inside.isEmpty())
        throw ScreenContentError(Code::displayGone, "the display is no longer part of the screen");
    throw ScreenContentError(Code::noPicture, "the X server gives no picture of the screen");
}

const RootChild* childOf(std::span<const RootChild> children, xcb_window_t window) {
    const auto found = std::ranges::find(children, window, &RootChild::window);
    return found == children.end() ? nullptr : &*found;
}

bool isViewable(const CaptureConnection& connection, xcb_window_t window) {
    auto* const server = connection.get();
    const XcbReply<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, window), nullptr)};
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// Some of the children of the root, and all the others that show something; lowest first.
struct SortedChildren {
    std::vector<RootChild> excluded;
    std::vector<RootChild> others;
};

SortedChildren seenChildren(const WindowList& list, std::span<const xcb_window_t> excludedFrames) {
    SortedChildren sorted;
    for (const auto& child : list.rootChildren()) {
        if (child.isSeen())
            (std::ranges::find(excludedFrames, child.window) == excludedFrames.end() ? sorted.others
                                                                                     : sorted.excluded)
                .push_back(child);
    }
    return sorted;
}

/// The part of `area` that the children take, whether or not they show something there.
QRegion takenBy(const CaptureConnection& connection, std::span<const RootChild> children, const QRect& area) {
    QRegion taken;
    for (const auto& child : children) {
        if (child.pixels.intersects(area))
            taken += regionOf(connection, child) & area;
    }
    return taken;
}

std::vector<RootChild> childrenIn(std::span<const RootChild> children, const QRegion& region) {
    std::vector<RootChild> within;
    std::ranges::copy_if(children, std::back_inserter(within),
                         [&](const RootChild& child) { return region.intersects(child.pixels); });
    return within;
}

/// What is put together anew of a picture, from what the server gave at one moment.
class Scene {
public:
    Scene(const CaptureConnection& connection, PixelReader& reader, const QRect& area)
        : m_connection(connection),
          m_reader(reader),
          m_area(area),
          m_isCompositing(connection.isCompositing()) {}

    /// Fetches what lies below the excluded windows; with the server grabbed.
    void fetch(const SortedChildren& children) {
        for (const auto& child : children.excluded) {
            Patch patch{.region = shownBy(child), .layers = {}};
            m_hidden += patch.region;
            const auto rect = patch.region.boundingRect();
            for (const auto& other : childrenIn(children.others, patch.region)) {
                if (auto layer = layerOf(other, rect))
                    patch.layers.push_back(*std::move(layer));
            }
            m_patches.push_back(std::move(patch));
        }
        if (m_hidden.isEmpty())
            return;
        m_background = rootBackground(m_connection, m_hidden.boundingRect());
        if (m_background.isNull())
            m_bare = QRegion(m_area) - m_hidden - takenBy(m_connection, children.others, m_area);
    }

    /// Into the picture of the area as it was at that moment.
    void paint(QImage& picture) const {
        if (m_hidden.isEmpty())
            return;
        const auto corner = m_area.topLeft();
        const auto place = m_hidden.boundingRect();
        auto background = m_background;
        if (background.isNull()) {
            // Nobody tells, but a part of it may be seen.
            background = QImage(place.size(), QImage::Format_RGB32);
            background.fill(commonestColor(picture, m_bare.translated(-corner)).value_or(qRgb(0, 0, 0)));
        }
        for (const auto& patch : m_patches)
            paintScene(picture, corner, patch.region, background, place.topLeft(), patch.layers);
    }

private:
    struct Patch {
        QRegion region;
        std::vector<SceneLayer> layers;
    };

    /// What is seen of a window. A compositor shows nothing where it is transparent.
    QRegion shownBy(const RootChild& child) const {
        const auto region = takenBy(m_connection, std::span(&child, 1), m_area);
        if (!m_isCompositing || region.isEmpty())
            return region;
        const auto part = region.boundingRect();
        const auto pixels = WindowContents(m_connection, child.window)
                                .pixels(part.translated(-child.pixels.topLeft()), m_reader);
        return pixels.hasAlphaChannel() ? region & paintedPart(pixels).translated(part.topLeft()) : region;
    }

    std::optional<SceneLayer> layerOf(const RootChild& child, const QRect& place) const {
        const auto part = child.pixels & place;
        const auto corner = child.pixels.topLeft();
        auto pixels = WindowContents(m_connection, child.window).pixels(part.translated(-corner), m_reader);
        if (pixels.isNull())
            return {};
        SceneLayer layer{.corner = part.topLeft(), .pixels = std::move(pixels), .shape = {}, .opacity = 1};
        if (const auto shape = shapeOf(m_connection, child))
            layer.shape = shape->translated(corner);
        // Nobody mixes what windows show without a compositor.
        if (m_isCompositing)
            layer.opacity = opacityOf(m_connection, child.window);
        else
            layer.pixels = madeOpaque(std::move(layer.pixels));
        return layer;
    }

    const CaptureConnection& m_connection;
    PixelReader& m_reader;
    QRect m_area;
    bool m_isCompositing;
    std::vector<Patch> m_patches;
    QRegion m_hidden;
    QImage m_background;
    /// Where there is no window; known if the background is not.
    QRegion m_bare;
};

/// The child of the root that shows the window.
RootChild childShowing(const CaptureConnection& connection, const WindowList& list, xcb_window_t window) {
    const auto frame = list.frameOf(window);
    const auto children = list.rootChildren();
    const auto* const child = frame ? childOf(children, *frame) : nullptr;
    if (!child)
        throw ScreenContentError(Code::windowGone, "the window has gone");
    // Of several windows in one frame only one is there to be seen.
    if (!child->isSeen() || !isViewable(connection, window))
        throw ScreenContentError(Code::windowNotReadable, "the window is not on the screen");
    return *child;
}

} // namespace

QImage screenPicture(CaptureConnection& connection, const QRect& area,
                     std::span<const xcb_window_t> excluded) {
    const WindowList list(connection.get(), connection.screen());
    std::vector<xcb_window_t> frames;
    for (const auto window : excluded) {
        if (const auto frame = list.frameOf(window))
            frames.push_back(*frame);
    }
    const auto children = frames.empty() ? SortedChildren() : seenChildren(list, frames);
    const auto hidden = takenBy(connection, children.excluded, area);
    PixelReader reader(connection);
    if (hidden.isEmpty()) {
        reader.prepare(area.size());
        const ServerGrab grab(connection.get());
        return readScreen(connection, area, reader);
    }

    keepContents(connection, childrenIn(children.others, hidden), hidden);
    reader.prepare(area.size());
    Scene scene(connection, reader, area);
    QImage picture;
    {
        const ServerGrab grab(connection.get());
        picture = readScreen(connection, area, reader);
        // They may have moved meanwhile.
        scene.fetch(seenChildren(list, frames));
    }
    scene.paint(picture);
    return picture;
}

WindowPicture windowPicture(CaptureConnection& connection, xcb_window_t window) {
    const WindowList list(connection.get(), connection.screen());
    auto child = childShowing(connection, list, window);
    keepContents(connection, std::span(&child, 1), child.pixels);
    PixelReader reader(connection);
    reader.prepare(child.pixels.size());
    QImage picture;
    std::optional<QRegion> shape;
    QMargins shadow;
    {
        const ServerGrab grab(connection.get());
        // It may have gone or moved meanwhile.
        child = childShowing(connection, list, window);
        const WindowContents contents(connection, child.window);
        picture = contents.pixels(QRect(QPoint(), contents.size()), reader);
        shape = shapeOf(connection, child);
        shadow = list.ownShadow(window);
    }
    if (picture.isNull())
        throw ScreenContentError(Code::windowNotReadable, "the X server does not give the window's contents");
    if (shape)
        picture = cutToShape(picture, *shape);
    const auto whole = picture.rect();
    const auto inner = whole.marginsRemoved(shadow);
    const bool isCut = !inner.isEmpty() && whole.contains(inner) && inner != whole;
    return {.image = isCut ? picture.copy(inner) : picture,
            .pixels = (isCut ? inner : whole).translated(child.pixels.topLeft())};
}

} // namespace kestrova
