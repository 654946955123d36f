#pragma once

#include "Kestrova/capture/ThumbnailPanel.h"
#include "Platform/MainQueue.h"

#include <QRect>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

namespace kestrova {

class CapturedImageFiles;
class CapturedThumbnailStackView;
class WindowManagement;

/// The window of the previews. The window manager has no say in it, so that it stands on every workspace and
/// the keyboard stays where it is. It is larger than the column, by the room that the shadows need, and as
/// tall as the column may become: a window that grows at its upper edge would show its content at the wrong
/// place for a moment. A click beside the previews goes to what lies below.
class ThumbnailPanelWidget final : public QWidget, public ThumbnailPanel {
public:
    struct Surroundings {
        MainQueue& mainQueue;
        WindowManagement& windowManagement;
        /// Writes what is dragged.
        CapturedImageFiles& files;
        /// A rectangle of the screen in the toolkit's coordinates.
        std::function<QRect(const ScreenRect&)> toolkitRect;
        /// Told when nothing will be drawn for a while. May be empty.
        std::function<void()> onRest = {};
    };

    /// What it is given outlives it.
    explicit ThumbnailPanelWidget(Surroundings surroundings);

    void setContent(ThumbnailColumn column) override;
    std::uint32_t windowNumber() const override;
    bool isVisible() const override { return QWidget::isVisible(); }
    void setFrame(const ScreenRect& frame, const ScreenRect& largest) override;
    void setAlpha(double alpha) override;
    void animateAlpha(double alpha, AnimationDuration duration, AnimationTiming timing) override;
    void orderFrontRegardless() override;
    void orderOut() override;

    CapturedThumbnailStackView& view() const { return *m_view; }

private:
    /// Wraps `act` so that behind a screen locker it does nothing.
    std::function<void(QUuid)> unlessCovered(std::function<void(QUuid)> act) const;
    void watchDisplays();
    void displaysChanged();
    void startDrag(const ThumbnailEntry& entry, const QPixmap& tile, QPoint pressedAt);
    /// Looks whether the window is blended with what lies behind it, and gives it the shape of the tiles.
    void adaptToScreen();

    Surroundings m_surroundings;
    CapturedThumbnailStackView* m_view;
    QVariantAnimation m_alphaAnimation;
    /// As it was placed, in the toolkit's coordinates: the origin of global points goes with the primary
    /// display.
    QRect m_column;
    ScheduledBlock m_displaysNotice;
};

} // namespace kestrova
