#include "bench/BareShortcut.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace {

/// A window over the display that draws one colour, and a mark below the mouse.
class Overlay final : public QWidget {
public:
    Overlay() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint) {
        setGeometry(screen()->geometry());
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
        create();
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        constexpr QRect belowTheMouse(16, 8, 70, 18);
        update(m_mark);
        m_mark = belowTheMouse.translated(event->position().toPoint());
        update(m_mark);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(40, 40, 90));
        painter.fillRect(m_mark, QColor(220, 220, 220));
    }

private:
    QRect m_mark;
};

} // namespace

/// The floor for a window of this toolkit that covers the display: it comes on the shortcut, and follows the
/// mouse. Nothing of Kestrova is linked into it.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Overlay overlay;
    kestrova::bench::BareShortcut shortcut(application, overlay);
    return QApplication::exec();
}
