#include "Kestrova/shelf/widgets/PanelMenu.h"
#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"
#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/X11HotKeys.h"
#include "Platform/x11/X11Keymap.h"
#include "Platform/x11/X11WindowManagement.h"
#include "tests/pictures/DetailHistory.h"
#include "tests/pictures/SampleHistories.h"
#include "tests/pictures/SampleWorkspace.h"
#include "tests/pictures/ShelfScenes.h"
#include "tests/support/FakeAppearance.h"
#include "tests/support/FakeEventMonitors.h"
#include "tests/support/FakeLinkPreviews.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/FakeWindowManagement.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/RecordingHUD.h"
#include "tests/support/RecordingSharing.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

using namespace kestrova;

namespace {

/// A shelf of its own on a store.
class Shelf {
public:
    Shelf(ModelContainer& container, WindowManagement& windowManagement, const QString& theme)
        : panel({.mainQueue = queue,
                 .windowManagement = windowManagement,
                 .appearance = appearance,
                 .toolkitRect = &FakeScreens::toolkitRect,
                 .screenRect = &FakeScreens::screenRect}),
          view({container, queue, pasteboard, defaults, monitors, hud, panel, workspace, sharing, screens,
                linkPreviews},
               {.onSelect = [](const auto&) {},
                .onDismiss = [] {},
                .onEditImage = [](const auto&) {},
                .onPanelWidthChange =
                    [this](double width) {
                        panel.setFrame({.x = 160, .y = 120, .width = width, .height = 540});
                    },
                .onStepAside = [] {}}) {
        defaults.set(QStringLiteral("themePreference"), theme);
        linkPreviews.known = detailPreviews();
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
    SampleWorkspace workspace;
    RecordingSharing sharing;
    FakeLinkPreviews linkPreviews{queue};
    FakeScreens screens;
    FakeAppearance appearance;
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

void play(const ShelfScene& scene, Shelf& shelf) {
    shelf.show();
    scene.enter(shelf.view);
    settle();
    if (scene.act) {
        scene.act(shelf.panel);
        settle();
    }
}

QImage blank(QSize points, double scale, QImage::Format format, const QColor& color) {
    QImage image((QSizeF(points) * scale).toSize(), format);
    image.setDevicePixelRatio(scale);
    image.fill(color);
    return image;
}

QImage pictureOf(QWidget& window) {
    auto picture = blank(window.size(), window.devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied,
                         Qt::transparent);
    window.render(&picture, {}, {}, QWidget::DrawChildren | QWidget::DrawWindowBackground);
    return picture;
}

/// The panel and the menus that are open, one over the other.
QImage pictureOver(QWidget& panel, const QColor& desktop) {
    constexpr int margin = 24;
    std::vector<QWidget*> windows{&panel};
    auto area = panel.geometry();
    for (auto* const menu : panel.findChildren<PanelMenu*>())
        if (menu->isVisible()) {
            windows.push_back(menu);
            area |= menu->geometry();
        }
    area.adjust(-margin, -margin, margin, margin);
    auto picture = blank(area.size(), panel.devicePixelRatioF(), QImage::Format_RGB32, desktop);
    QPainter painter(&picture);
    for (auto* const window : windows)
        painter.drawImage(window->pos() - area.topLeft(), pictureOf(*window));
    return picture;
}

bool save(const QImage& picture, const QDir& folder, const QString& name) {
    const auto path = folder.filePath(name + QStringLiteral(".png"));
    if (picture.save(path))
        return true;
    std::fprintf(stderr, "shelf_pictures: %s cannot be written\n", qUtf8Printable(path));
    return false;
}

/// The stores of the scenes, filled as they are asked for.
class Histories {
public:
    ModelContainer& of(ShelfScene::History history) {
        auto& store = m_stores[history];
        if (!store) {
            store = open(QStringLiteral("%1.sqlite").arg(m_stores.size()));
            fill(history, *store);
        }
        return *store;
    }

private:
    std::unique_ptr<ModelContainer> open(const QString& name) {
        auto opened = ModelContainer::open(m_folder.filePath(name));
        if (!opened)
            qFatal("No store can be made for the pictures.");
        return std::move(opened.value());
    }
    static void fill(ShelfScene::History history, ModelContainer& store) {
        switch (history) {
        case ShelfScene::History::empty:
            return;
        case ShelfScene::History::everyKind:
            return fillWithEveryKind(store);
        case ShelfScene::History::extremes:
            return fillWithExtremes(store);
        case ShelfScene::History::many:
            return fillWithMany(store);
        case ShelfScene::History::details:
            return fillWithDetails(store);
        }
        Q_UNREACHABLE();
    }

    QTemporaryDir m_folder;
    std::map<ShelfScene::History, std::unique_ptr<ModelContainer>> m_stores;
};

/// The desktop's font has another size while it lives.
class ScaledFont {
public:
    explicit ScaledFont(double scale) : m_former(QApplication::font()) {
        auto font = m_former;
        font.setPointSizeF(font.pointSizeF() * scale);
        QApplication::setFont(font);
    }
    ~ScaledFont() { QApplication::setFont(m_former); }
    ScaledFont(const ScaledFont&) = delete;
    ScaledFont& operator=(const ScaledFont&) = delete;

private:
    const QFont m_former;
};

bool draw(const ShelfScene& scene, ModelContainer& container, const QDir& folder) {
    FakeWindowManagement windowManagement;
    const ScaledFont font(scene.fontScale);
    for (const auto& theme : {QStringLiteral("light"), QStringLiteral("dark")}) {
        Shelf shelf(container, windowManagement, theme);
        play(scene, shelf);
        const auto opposite = theme == QStringLiteral("light") ? QColor(Qt::black) : QColor(Qt::white);
        if (!save(pictureOver(shelf.panel, opposite), folder,
                  QStringLiteral("shelf-%1-%2-%3x")
                      .arg(scene.name, theme)
                      .arg(shelf.panel.devicePixelRatioF())))
            return false;
    }
    return true;
}

/// Shows a scene on the display, over a plain colour, until it is ended from outside.
int showOnDisplay(const ShelfScene& scene, ModelContainer& container, const QString& theme,
                  const QColor& ground) {
    QWidget desktop(nullptr, Qt::BypassWindowManagerHint);
    desktop.setPalette(ground);
    desktop.setGeometry(QGuiApplication::primaryScreen()->geometry());
    desktop.show();
    desktop.lower();
    QtMainQueue mainQueue;
    X11Keymap keymap;
    X11HotKeys hotKeys(mainQueue, keymap);
    X11WindowManagement windowManagement(hotKeys);
    Shelf shelf(container, windowManagement, theme);
    play(scene, shelf);
    return QApplication::exec();
}

/// Room for the panel with its menus at every scale.
QByteArray offscreenPlatform(QTemporaryFile& description) {
    if (!description.open())
        qFatal("The display of the pictures cannot be described.");
    description.write(R"({"screens": [{"name": "pictures", "x": 0, "y": 0, "width": 3200, "height": 2400,
                                       "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    description.close();
    return "offscreen:configfile=" + QFile::encodeName(description.fileName());
}

} // namespace

int main(int argc, char* argv[]) {
    const bool isShown = argc == 5 && QByteArrayView(argv[1]) == "--show";
    if (argc != 2 && argc != 3 && !isShown) {
        std::fprintf(stderr, "usage: shelf_pictures FOLDER [SCENE] | --show light|dark COLOUR SCENE\n");
        return EXIT_FAILURE;
    }
    QTemporaryFile display;
    if (!isShown)
        qputenv("QT_QPA_PLATFORM", offscreenPlatform(display));
    const QApplication application(argc, argv);
    // A caret that blinks is in one picture and not in the next.
    QApplication::setCursorFlashTime(0);
    Histories histories;
    const auto argument = [&](int place) { return QString::fromLocal8Bit(place < argc ? argv[place] : ""); };
    const auto scenes = shelfScenes();
    if (isShown) {
        const auto scene = std::ranges::find(scenes, argument(4), &ShelfScene::name);
        if (scene == scenes.end()) {
            std::fprintf(stderr, "shelf_pictures: there is no scene %s\n", argv[4]);
            return EXIT_FAILURE;
        }
        return showOnDisplay(*scene, histories.of(scene->history), argument(2), QColor(argument(3)));
    }
    const QDir folder(argument(1));
    const auto wanted = argument(2);
    for (const auto& scene : scenes)
        if (scene.name.startsWith(wanted) && !draw(scene, histories.of(scene.history), folder))
            return EXIT_FAILURE;
    return EXIT_SUCCESS;
}
