#include "Kestrova/capture/widgets/HUDPanelWidget.h"
#include "tests/support/FakeWindowManagement.h"

#include <QApplication>
#include <QDir>
#include <QPainter>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

using namespace kestrova;

namespace {

QImage pictureOf(HUDEvent event, FakeWindowManagement& screen, const QColor& desktop) {
    HUDPanelWidget panel({.windowManagement = screen, .toolkitRect = [](const ScreenRect& frame) {
                              return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
                          }});
    panel.setContent(event, {});
    const auto size = panel.fittingSize();
    panel.setFrame({.x = 100, .y = 100, .width = size.width(), .height = size.height()});
    panel.orderFrontRegardless();
    const double scale = panel.devicePixelRatioF();
    QImage picture((QSizeF(panel.size()) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(desktop);
    const auto area = panel.mask().isEmpty() ? QRegion(panel.rect()) : panel.mask();
    panel.render(&picture, area.boundingRect().topLeft(), area, QWidget::DrawChildren);
    return picture;
}

/// Every event from top to bottom: over white and over black, and over white without a compositor.
QImage sheet(double fontScale) {
    FakeWindowManagement blending;
    FakeWindowManagement plain;
    plain.compositing = false;
    const std::array<std::pair<FakeWindowManagement*, QColor>, 3> columns{
        {{&blending, Qt::white}, {&blending, Qt::black}, {&plain, Qt::white}}};
    constexpr std::array events{HUDEvent::copied, HUDEvent::pasted, HUDEvent::captured, HUDEvent::edited};
    const QSize cell = QSize(180, 84) * fontScale;
    const double scale = qApp->devicePixelRatio();
    QImage all((QSizeF(cell.width() * 3, cell.height() * 4) * scale).toSize(), QImage::Format_RGB32);
    all.setDevicePixelRatio(scale);
    QPainter painter(&all);
    for (std::size_t row = 0; row < events.size(); ++row)
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const auto& [screen, desktop] = columns[column];
            const QPoint corner(static_cast<int>(column) * cell.width(),
                                static_cast<int>(row) * cell.height());
            painter.fillRect(QRect(corner, cell), desktop);
            painter.drawImage(corner, pictureOf(events[row], *screen, desktop));
        }
    return all;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: toast_pictures FOLDER\n");
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const auto ordinary = QApplication::font();
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const double fontScale : {1.0, 1.5, 2.0}) {
        auto font = ordinary;
        font.setPointSizeF(ordinary.pointSizeF() * fontScale);
        QApplication::setFont(font);
        const auto path = folder.filePath(
            QStringLiteral("toast-font-%1-%2x.png").arg(fontScale).arg(application.devicePixelRatio()));
        if (!sheet(fontScale).save(path)) {
            std::fprintf(stderr, "toast_pictures: %s cannot be written\n", qUtf8Printable(path));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
