#include "bench/BareShortcut.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {

/// A window that draws one colour, another one after each key.
class Panel final : public QWidget {
public:
    Panel() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
        setGeometry(160, 120, 960, 540);
        setAttribute(Qt::WA_OpaquePaintEvent);
        create();
    }

protected:
    void keyPressEvent(QKeyEvent*) override { change(); }
    void wheelEvent(QWheelEvent*) override { change(); }
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), m_changed ? QColor(40, 40, 90) : QColor(90, 40, 40));
    }

private:
    void change() {
        m_changed = !m_changed;
        update();
    }

    bool m_changed = false;
};

} // namespace

/// The floor for a panel of this toolkit: it comes on the shortcut, and draws another colour after each key.
/// Nothing of Kestrova is linked into it.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Panel panel;
    kestrova::bench::BareShortcut shortcut(application, panel);
    return QApplication::exec();
}
