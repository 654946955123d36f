#include "tests/pictures/SampleWorkspace.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

namespace kestrova {
namespace {

QIcon drawnIcon(const QColor& color, QSize shape) {
    constexpr int edge = 128;
    QPixmap picture(edge, edge);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 0, edge);
    gradient.setColorAt(0, color.lighter(140));
    gradient.setColorAt(1, color);
    painter.setBrush(gradient);
    painter.setPen(Qt::NoPen);
    QRect frame({}, shape);
    frame.moveCenter(picture.rect().center());
    painter.drawRoundedRect(frame, 14, 14);
    return QIcon(picture);
}

} // namespace

SampleWorkspace::SampleWorkspace() {
    installed[editor] = {.name = QStringLiteral("텍스트 편집기"),
                         .icon = drawnIcon(QColor(255, 149, 0), {116, 116})};
}

void SampleWorkspace::fileIcon(const QString& path, std::function<void(const QIcon&)> done) {
    const bool isKnown = !path.startsWith(QStringLiteral("/absent/"));
    QTimer::singleShot(0, [isKnown, done = std::move(done)] {
        done(isKnown ? drawnIcon(QColor(142, 142, 147), {92, 120}) : QIcon());
    });
}

} // namespace kestrova
