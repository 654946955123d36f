#include "Kestrova/capture/CapturedImageFiles.h"
#include "Kestrova/capture/widgets/CapturedThumbnailItemView.h"
#include "Kestrova/capture/widgets/CapturedThumbnailStackView.h"
#include "Kestrova/capture/widgets/ThumbnailPanelWidget.h"
#include "Platform/x11/QtMainQueue.h"
#include "tests/support/FakeWindowManagement.h"

#include <QApplication>
#include <QDir>
#include <QEnterEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

using namespace kestrova;

namespace {

/// Something like a window with text, so that one sees what scaling does to it.
QImage screenshot(QSize size, const QColor& ground, const QColor& ink) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(ground);
    QPainter painter(&picture);
    painter.fillRect(0, 0, size.width(), 28, ink);
    painter.setPen(ink);
    QFont font;
    font.setPixelSize(16);
    painter.setFont(font);
    for (int y = 56; y < size.height(); y += 26)
        painter.drawText(
            20, y, QStringLiteral("클립보드 기록 — a line of text %1, as a window would show it").arg(y));
    painter.fillRect(size.width() / 2, size.height() / 2, size.width() / 4, size.height() / 4,
                     QColor(220, 90, 40));
    return picture;
}

QImage windowWithCorners() {
    QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(picture.rect(), 30, 30);
    painter.setClipPath(path);
    painter.drawImage(0, 0, screenshot(picture.size(), Qt::white, Qt::darkCyan));
    return picture;
}

enum class Over { nothing, preview, editButton, closeButton };

struct Scene {
    QString name;
    std::vector<QImage> pictures;
    Over over = Over::nothing;
    bool blends = true;
};

std::vector<Scene> scenes() {
    const auto light = screenshot({1920, 1080}, Qt::white, QColor(60, 60, 70));
    const auto dark = screenshot({1280, 960}, QColor(24, 24, 28), QColor(210, 210, 215));
    const auto tall = screenshot({300, 1600}, Qt::white, QColor(30, 90, 160));
    const auto wide = screenshot({2400, 90}, Qt::white, QColor(160, 30, 90));
    const auto tiny = screenshot({40, 30}, Qt::white, QColor(30, 120, 60));
    return {{.name = QStringLiteral("one"), .pictures = {light}},
            {.name = QStringLiteral("hovered"), .pictures = {light}, .over = Over::preview},
            {.name = QStringLiteral("edit"), .pictures = {light}, .over = Over::editButton},
            {.name = QStringLiteral("close"), .pictures = {dark}, .over = Over::closeButton},
            {.name = QStringLiteral("three"), .pictures = {light, dark, windowWithCorners()}},
            {.name = QStringLiteral("six"),
             .pictures = {tall, wide, tiny, light, dark, windowWithCorners()},
             .over = Over::preview},
            {.name = QStringLiteral("plain"), .pictures = {light, wide, dark}, .blends = false}};
}

std::optional<QImage> drawn(const Scene& scene, const QColor& desktop, QtMainQueue& mainQueue,
                            CapturedImageFiles& files) {
    FakeWindowManagement screen;
    screen.compositing = scene.blends;
    ThumbnailPanelWidget panel({.mainQueue = mainQueue,
                                .windowManagement = screen,
                                .files = files,
                                .toolkitRect = [](const ScreenRect& frame) {
                                    return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
                                }});
    ThumbnailColumn column;
    for (const auto& picture : scene.pictures)
        column.entries.push_back({.image = std::make_shared<CapturedPicture>(picture, "kept elsewhere"),
                                  .pngData = {},
                                  .suggestedName = QStringLiteral("Screenshot.png")});
    const auto entries = column.entries;
    panel.setContent(std::move(column));
    const auto count = static_cast<double>(entries.size());
    const ScreenRect frame{.x = 60, .y = 40, .width = 256, .height = count * 188 + 8};
    panel.setFrame(frame, frame);
    panel.orderFrontRegardless();
    auto* const last = panel.view().item(entries.back().id);
    if (scene.over != Over::nothing) {
        last->hover(last->rect().center());
        const auto buttons = last->findChildren<QAbstractButton*>();
        if (scene.over != Over::preview) {
            auto* const button = buttons.at(scene.over == Over::editButton ? 0 : 1);
            QEnterEvent enter({}, {}, {});
            QApplication::sendEvent(button, &enter);
        }
    }
    // The pictures have come when nobody holds their pixels any longer.
    const bool isComplete = QTest::qWaitFor(
        [&] {
            return std::ranges::none_of(entries,
                                        [](const auto& entry) { return entry.image->holdsPixels(); }) &&
                   !panel.view().isMoving() && (scene.over == Over::nothing || last->isHoverLayerSettled());
        },
        10'000);
    if (!isComplete)
        return {};
    const double scale = panel.devicePixelRatioF();
    QImage picture((QSizeF(panel.size()) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(desktop);
    const auto area = panel.mask().isEmpty() ? QRegion(panel.rect()) : panel.mask();
    panel.render(&picture, area.boundingRect().topLeft(), area, QWidget::DrawChildren);
    return picture;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: thumbnail_pictures FOLDER\n");
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QtMainQueue mainQueue;
    CapturedImageFiles files(mainQueue, QDir::tempPath());
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const std::array<std::pair<QString, QColor>, 2> desktops{
        {{QStringLiteral("light"), QColor(240, 240, 245)}, {QStringLiteral("dark"), QColor(20, 22, 28)}}};
    for (const auto& scene : scenes())
        for (const auto& [name, color] : desktops) {
            const auto path = folder.filePath(QStringLiteral("thumbnails-%1-%2-%3x.png")
                                                  .arg(scene.name, name)
                                                  .arg(application.devicePixelRatio()));
            const auto picture = drawn(scene, color, mainQueue, files);
            if (!picture || !picture->save(path)) {
                std::fprintf(stderr, "thumbnail_pictures: %s cannot be drawn\n", qUtf8Printable(path));
                return EXIT_FAILURE;
            }
        }
    return EXIT_SUCCESS;
}
