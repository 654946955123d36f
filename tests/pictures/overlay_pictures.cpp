#include "Kestrova/capture/SelectionOverlayView.h"
#include "Kestrova/capture/widgets/CrosshairCursor.h"
#include "Kestrova/capture/widgets/OverlayPanelWidget.h"
#include "Kestrova/capture/widgets/SelectionOverlayWidget.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/FakeWindowManagement.h"

#include <QApplication>
#include <QDir>
#include <QLinearGradient>
#include <QPainter>
#include <QRandomGenerator>
#include <QScreen>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

using namespace kestrova;

namespace {

constexpr QSize displaySize{640, 360};
constexpr int columns = 2;

struct Scene {
    std::function<void(SelectionOverlayView&)> enter;
    std::optional<QPointF> pointer;
};

void select(SelectionOverlayView& view, const ScreenRect& rect) {
    view.mouseDown({rect.x, rect.maxY()});
    view.setSelectionRectGlobal(rect);
}

void hover(SelectionOverlayView& view, const ScreenRect& frame, const QString& title) {
    view.setMode(CaptureMode::window);
    view.setHoveredWindowFrameGlobal(frame);
    view.setHoveredWindowTitle(title);
}

std::vector<Scene> scenes() {
    const auto frozen = [](SelectionOverlayView& view) { view.setShowsFrozen(true); };
    return {
        {.enter = [](SelectionOverlayView&) {}, .pointer = QPointF(200, 160)},
        {.enter = frozen, .pointer = QPointF(634, 5)},
        {.enter =
             [](SelectionOverlayView& view) {
                 select(view, {120, 90, 320, 180});
             },
         .pointer = {}},
        {.enter =
             [frozen](SelectionOverlayView& view) {
                 frozen(view);
                 select(view, {40, 4, 90, 60});
             },
         .pointer = {}},
        {.enter =
             [](SelectionOverlayView& view) {
                 select(view, {500, 200, 300, 120});
             },
         .pointer = {}},
        {.enter = [](SelectionOverlayView& view) { view.setMode(CaptureMode::window); }, .pointer = {}},
        {.enter =
             [](SelectionOverlayView& view) {
                 hover(view, {60, 40, 360, 240}, QStringLiteral("보고서 초안 — 문서 편집기"));
             },
         .pointer = {}},
        {.enter =
             [](SelectionOverlayView& view) {
                 hover(view, {-40, 120, 760, 300},
                       QStringLiteral("A title that is longer than the display is wide, as those of browsers "
                                      "are that show the whole heading of an article"));
             },
         .pointer = {}},
    };
}

QImage emptyPicture(QSize points) {
    const double scale = qApp->devicePixelRatio();
    QImage picture((QSizeF(points) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    return picture;
}

void paintWindow(QPainter& painter, const QRect& frame, const QColor& ground, const QColor& text) {
    painter.fillRect(frame, ground);
    painter.setPen(text);
    painter.drawRect(frame);
    for (int line = 0; line < 8; ++line)
        painter.drawText(frame.topLeft() + QPoint(16, 30 + 24 * line),
                         QStringLiteral("The quick brown fox jumps over the lazy dog. 다람쥐 헌 쳇바퀴에"));
}

QImage lightDesktop() {
    auto picture = emptyPicture(displaySize);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    paintWindow(painter, {60, 80, 360, 240}, Qt::white, Qt::black);
    return picture;
}

QImage darkDesktop() {
    auto picture = emptyPicture(displaySize);
    picture.fill(QColor(18, 18, 22));
    QPainter painter(&picture);
    paintWindow(painter, {60, 80, 360, 240}, QColor(40, 40, 44), Qt::lightGray);
    return picture;
}

/// Many colours, and as much detail as a photograph has.
QImage photoDesktop() {
    auto picture = emptyPicture(displaySize);
    QPainter painter(&picture);
    QLinearGradient sky(0, 0, displaySize.width(), displaySize.height());
    sky.setStops({{0, Qt::yellow}, {0.4, QColor(255, 120, 60)}, {0.7, Qt::darkCyan}, {1, Qt::white}});
    painter.fillRect(QRect(QPoint(), displaySize), sky);
    QRandomGenerator random(1);
    painter.setPen(Qt::NoPen);
    for (int blot = 0; blot < 3000; ++blot) {
        painter.setBrush(QColor::fromHsv(random.bounded(360), 180, random.bounded(256), 120));
        painter.drawEllipse(QPoint(random.bounded(displaySize.width()), random.bounded(displaySize.height())),
                            3, 3);
    }
    return picture;
}

QImage pictureOf(const Scene& scene, const QImage& desktop) {
    const double scale = desktop.devicePixelRatio();
    const Screen screen{
        .identifier = 1,
        .frame = {0, 0, static_cast<double>(displaySize.width()), static_cast<double>(displaySize.height())},
        .visibleFrame = {},
        .scale = scale};
    FakeWindowManagement windowManagement;
    CrosshairCursor crosshair;
    QtMainQueue mainQueue;
    OverlayPanelWidget panel(
        {.mainQueue = mainQueue,
         .windowManagement = windowManagement,
         .crosshair = crosshair,
         .place = OverlayPanelWidget::Place{.screen = QGuiApplication::primaryScreen(),
                                            .pixels = QRect(QPoint(), desktop.size())},
         .pointOfPixel = [](QPoint pixel, OverlayPanelWidget::PixelPoint) { return QPointF(pixel); }});
    const auto view = std::make_shared<SelectionOverlayView>(screen);
    view->setFrozenImage(desktop);
    panel.setContentView(view);
    view->setPanel(&panel);
    if (scene.pointer)
        view->mouseMoved(*scene.pointer);
    scene.enter(*view);
    panel.orderFrontRegardless();
    auto picture = desktop;
    // A window is blended, where a widget that renders replaces what is there.
    QImage overlay(picture.size(), QImage::Format_ARGB32_Premultiplied);
    overlay.setDevicePixelRatio(scale);
    overlay.fill(Qt::transparent);
    panel.window().render(&overlay, {}, {}, QWidget::DrawChildren);
    QPainter painter(&picture);
    painter.drawImage(QPoint(), overlay);
    if (scene.pointer) {
        auto pointer = CrosshairCursor::picture(scale);
        pointer.setDevicePixelRatio(scale);
        painter.drawPixmap(QPointF(scene.pointer->x() - 12, displaySize.height() - scene.pointer->y() - 12),
                           pointer);
    }
    view->setPanel(nullptr);
    return picture;
}

QImage sheet(const QImage& desktop) {
    const auto all = scenes();
    const int rows = (static_cast<int>(all.size()) + columns - 1) / columns;
    constexpr QSize cell = displaySize + QSize(8, 8);
    auto picture = emptyPicture({cell.width() * columns, cell.height() * rows});
    picture.fill(Qt::magenta);
    QPainter painter(&picture);
    for (int index = 0; index < static_cast<int>(all.size()); ++index)
        painter.drawImage(QPoint(index % columns * cell.width(), index / columns * cell.height()),
                          pictureOf(all[static_cast<std::size_t>(index)], desktop));
    return picture;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: overlay_pictures FOLDER\n");
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const std::array<std::pair<QString, QImage>, 3> desktops{{{QStringLiteral("light"), lightDesktop()},
                                                              {QStringLiteral("dark"), darkDesktop()},
                                                              {QStringLiteral("photo"), photoDesktop()}}};
    for (const auto& [name, desktop] : desktops) {
        const auto path = folder.filePath(
            QStringLiteral("overlay-%1-%2x.png").arg(name).arg(application.devicePixelRatio()));
        if (!sheet(desktop).save(path)) {
            std::fprintf(stderr, "overlay_pictures: %s cannot be written\n", qUtf8Printable(path));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
