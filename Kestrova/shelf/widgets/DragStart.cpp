#include "Kestrova/shelf/widgets/DragStart.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Platform/MainQueue.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QPointer>

#include <utility>

namespace kestrova {
namespace {

constexpr double radius = 7;
constexpr double opacity = 0.92;

} // namespace

DragPicture dragPicture(const QWidget& widget, QSize size, QPoint hotSpot, const QColor& ground,
                        const std::function<void(QPainter&)>& paint) {
    const double scale = widget.devicePixelRatioF();
    QPixmap pixmap((QSizeF(size) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    auto plate = ground;
    plate.setAlpha(255);
    painter.setPen(Qt::NoPen);
    painter.setBrush(plate);
    painter.drawRoundedRect(QRectF({}, size), radius, radius);
    painter.setOpacity(1);
    paint(painter);
    return {pixmap, hotSpot};
}

bool isDragMeant(QPoint pressed, QPoint now) {
    return (now - pressed).manhattanLength() >= QApplication::startDragDistance();
}

void DragStart::start(DragPicture picture, std::function<QMimeData*()> begin) {
    // Not within the event of whoever was pressed, who may be gone by the end of the drag.
    m_mainQueue.post(
        [this, source = QPointer(&m_source), picture = std::move(picture), begin = std::move(begin)] {
            if (!source || !QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
                return;
            QMimeData* data = nullptr;
            m_view.perform([&] { data = begin(); });
            if (!data)
                return;
            auto* const drag = new QDrag(source);
            drag->setMimeData(data);
            drag->setPixmap(picture.pixmap);
            drag->setHotSpot(picture.hotSpot);
            drag->exec(Qt::CopyAction);
            // The program may have been told to end meanwhile.
            if (!source)
                return;
            m_view.perform([this] { m_view.dragEnded(); });
            if (onEnd)
                onEnd();
        });
}

} // namespace kestrova
