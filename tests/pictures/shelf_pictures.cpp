#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"
#include "Platform/WindowManagement.h"
#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/X11WindowManagement.h"
#include "tests/pictures/ShelfScenes.h"
#include "tests/support/FakeEventMonitors.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/RecordingHUD.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace kestrova;

namespace {

class Blending final : public WindowManagement {
public:
    bool isCompositing() const override { return true; }
    void standApart(std::uint64_t) override {}
};

/// A shelf of its own on a store.
class Shelf {
public:
    Shelf(ModelContainer& container, WindowManagement& windowManagement, const QString& theme)
        : panel({.mainQueue = queue,
                 .windowManagement = windowManagement,
                 .toolkitRect =
                     [](const ScreenRect& frame) {
                         return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
                     }}),
          view({container, queue, pasteboard, defaults, monitors, hud, panel},
               {.onSelect = [](const auto&) {},
                .onDismiss = [] {},
                .onEditImage = [](const auto&) {},
                .onPanelWidthChange =
                    [this](double width) {
                        panel.setFrame({.x = 160, .y = 120, .width = width, .height = 540});
                    }}) {
        defaults.set(QStringLiteral("themePreference"), theme);
        panel.setContent(view);
    }

    void show() {
        panel.setFrame({.x = 160, .y = 120, .width = view.panelWidth(), .height = 540});
        panel.orderFrontRegardless();
        panel.activateWindow();
        view.viewAppears();
        view.shelfPanelDidShow();
    }

    QtMainQueue queue;
    FakePasteboard pasteboard;
    InMemoryUserDefaults defaults;
    FakeEventMonitors monitors;
    RecordingHUD hud;
    ShelfPanelWidget panel;
    ShelfPanelView view;
};

/// Until transitions have ended and pictures are decoded.
void settle() {
    constexpr int longestTransition = 700;
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < longestTransition)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
}

QImage pictureOver(QWidget& panel, const QColor& desktop) {
    constexpr int margin = 24;
    const double scale = panel.devicePixelRatioF();
    const auto pixels = [scale](QSize points) { return (QSizeF(points) * scale).toSize(); };
    QImage window(pixels(panel.size()), QImage::Format_ARGB32_Premultiplied);
    window.setDevicePixelRatio(scale);
    window.fill(Qt::transparent);
    panel.render(&window, {}, {}, QWidget::DrawChildren);
    QImage picture(pixels(panel.size() + QSize(2 * margin, 2 * margin)), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(desktop);
    QPainter(&picture).drawImage(QPoint(margin, margin), window);
    return picture;
}

bool save(const QImage& picture, const QDir& folder, const QString& name) {
    const auto path = folder.filePath(name + QStringLiteral(".png"));
    if (picture.save(path))
        return true;
    std::fprintf(stderr, "shelf_pictures: %s cannot be written\n", qUtf8Printable(path));
    return false;
}

bool draw(const ShelfScene& scene, ModelContainer& container, const QDir& folder) {
    Blending windowManagement;
    for (const auto& theme : {QStringLiteral("light"), QStringLiteral("dark")}) {
        Shelf shelf(container, windowManagement, theme);
        shelf.show();
        scene.enter(shelf.view);
        settle();
        const auto opposite = theme == QStringLiteral("light") ? QColor(Qt::black) : QColor(Qt::white);
        if (!save(pictureOver(shelf.panel, opposite), folder,
                  QStringLiteral("shelf-%1-%2-%3x")
                      .arg(scene.name, theme)
                      .arg(shelf.panel.devicePixelRatioF())))
            return false;
    }
    return true;
}

std::unique_ptr<ModelContainer> openIn(const QTemporaryDir& folder, const QString& name) {
    auto opened = ModelContainer::open(folder.filePath(name));
    if (!opened)
        qFatal("No store can be made for the pictures.");
    return std::move(opened.value());
}

/// Shows the first scene on the display, over a plain colour, until it is ended from outside.
int showOnDisplay(ModelContainer& container, const QString& theme, const QColor& ground) {
    QWidget desktop(nullptr, Qt::BypassWindowManagerHint);
    desktop.setPalette(ground);
    desktop.setGeometry(QGuiApplication::primaryScreen()->geometry());
    desktop.show();
    desktop.lower();
    X11WindowManagement windowManagement;
    Shelf shelf(container, windowManagement, theme);
    shelf.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[]) {
    const bool isShown = argc == 4 && QByteArrayView(argv[1]) == "--show";
    if (argc != 2 && !isShown) {
        std::fprintf(stderr, "usage: shelf_pictures FOLDER | --show light|dark COLOUR\n");
        return EXIT_FAILURE;
    }
    if (!isShown)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir stores;
    const auto full = openIn(stores, QStringLiteral("full.sqlite"));
    fillWithEveryKind(*full);
    if (isShown)
        return showOnDisplay(*full, QString::fromLocal8Bit(argv[2]), QColor(QString::fromLocal8Bit(argv[3])));
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const auto& scene : shelfScenes())
        if (!draw(scene, *full, folder))
            return EXIT_FAILURE;
    const auto empty = openIn(stores, QStringLiteral("empty.sqlite"));
    return draw({QStringLiteral("empty"), [](ShelfPanelView&) {}}, *empty, folder) ? EXIT_SUCCESS
                                                                                   : EXIT_FAILURE;
}
