#pragma once

#include "Kestrova/capture/HUD.h"

#include <QAccessible>
#include <QPainterPath>
#include <QString>
#include <QWidget>

#include <functional>

namespace kestrova {

/// What the toast shows: a symbol and a few words on a dark shape. Its ideal size is its size hint.
class HUDView final : public QWidget {
public:
    /// How far what lies behind the window is let through.
    enum class Ground { translucent, opaque };

    explicit HUDView(QWidget* parent = nullptr);

    HUDEvent event() const { return m_event; }
    /// Tells assistive programs too.
    void setEvent(HUDEvent event);
    /// Called on a tap anywhere on the shape.
    std::function<void()> onTap;

    void setGround(Ground ground);
    /// The shape's outline for a rectangle of that size.
    static QPainterPath shape(const QRectF& rect);

    QSize sizeHint() const override;
    static QString text(HUDEvent event);
    static QString symbolName(HUDEvent event);

    /// As a tap does.
    void tap();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void announce(QAccessible::Event type);
    void adoptFont();

    HUDEvent m_event = HUDEvent::copied;
    Ground m_ground = Ground::translucent;
};

} // namespace kestrova
