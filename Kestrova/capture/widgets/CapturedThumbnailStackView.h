#pragma once

#include "Kestrova/capture/ThumbnailEntry.h"
#include "Kestrova/capture/widgets/ThumbnailTileMaker.h"
#include "Kestrova/look/FrameClock.h"
#include "Kestrova/look/Spring.h"

#include <QMargins>
#include <QPixmap>
#include <QRect>
#include <QWidget>

#include <chrono>
#include <functional>
#include <vector>

namespace kestrova {

class CapturedThumbnailItemView;
class MainQueue;

/// The column of previews, one above the other. It stands on the lower edge of the widget, which has room for
/// the shadows around it and may be taller.
class CapturedThumbnailStackView final : public QWidget {
public:
    /// Whether what lies behind the window shows through. Elsewhere there are no shadows, and nothing moves.
    enum class Ground { translucent, opaque };

    /// `mainQueue` outlives it.
    CapturedThumbnailStackView(MainQueue& mainQueue, QWidget* parent);
    ~CapturedThumbnailStackView() override;

    /// Each gets the identifier of an entry.
    std::function<void(QUuid)> onEntryClick;
    std::function<void(QUuid)> onEntryEdit;
    std::function<void(QUuid)> onEntryClose;
    /// `pressedAt` is counted from the upper left corner of the tile.
    std::function<void(const ThumbnailEntry& entry, const QPixmap& tile, QPoint pressedAt)> onEntryDrag;

    const std::vector<ThumbnailEntry>& entries() const { return m_entries; }
    /// From the top to the bottom. While it is visible, what comes, goes and moves does so in its time.
    void setEntries(const std::vector<ThumbnailEntry>& entries);
    void setGround(Ground ground);
    /// Pixels to a point: pictures become as fine as that.
    void setScale(double scale);

    /// How far the shadows reach beyond the column on each side.
    static QMargins shadowRoom();
    /// Where the tiles come to rest.
    std::vector<QRect> restingTiles() const;
    bool isMoving() const { return m_clock.state() == QAbstractAnimation::Running; }
    /// Of an entry that is shown; null otherwise.
    CapturedThumbnailItemView* item(QUuid id) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    /// Of the native window, whose word on where the mouse is holds whatever becomes of the tiles.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Item {
        CapturedThumbnailItemView* view = nullptr;
        /// How high it stands above the lowest one, in points.
        Spring height;
        /// From 0, not yet there, to 1.
        Spring presence;
        /// Pixels to a point of the picture that it shows or waits for.
        double scale = 0;
    };
    struct LeavingItem {
        QPixmap picture;
        Spring height;
        Spring presence;
    };

    Item makeItem(const ThumbnailEntry& entry);
    void remove(Item& item);
    void requestTile(Item& item);
    void showTile(QUuid id, double scale, const QImage& tile);
    void advance(std::chrono::duration<double> time);
    void finish();
    void layOut();
    bool isAtRest() const;
    /// Null for none. `mouse` is counted from its upper left corner.
    void setHovered(CapturedThumbnailItemView* view, QPoint mouse = {});
    /// A tile may have come to lie under a mouse that has not moved.
    void hoverUnderMouse();
    bool isAnimated() const;
    QRectF tileAt(double height) const;
    void paintShadow(QPainter& painter, const QRectF& tile) const;

    ThumbnailTileMaker m_maker;
    std::vector<ThumbnailEntry> m_entries;
    /// In the order of the entries.
    std::vector<Item> m_items;
    std::vector<LeavingItem> m_leaving;
    CapturedThumbnailItemView* m_hovered = nullptr;
    bool m_isMouseInside = false;
    QPixmap m_shadow;
    Ground m_ground = Ground::translucent;
    double m_scale = 0;
    FrameClock m_clock;
};

} // namespace kestrova
