#include "Kestrova/detail/widgets/ProgressIndicator.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QPainter>

#include <chrono>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int spokes = 8;
constexpr std::chrono::milliseconds turnTime{800ms};
constexpr double edge = 24;
// Of the half of the edge.
constexpr double spokeStart = 0.5;
constexpr double spokeEnd = 0.92;
constexpr double spokeWidth = 0.17;
constexpr double faintest = 0.2;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget* parent) : QWidget(parent) {
    setAccessibleName(QStringLiteral("불러오는 중"));
    setAccessibleRole(*this, QAccessible::ProgressBar);
    m_turn.setStartValue(0);
    m_turn.setEndValue(spokes);
    m_turn.setDuration(static_cast<int>(turnTime.count()));
    m_turn.setLoopCount(-1);
    // The value is a whole one: it is painted once a spoke and not at every step of the animation.
    QObject::connect(&m_turn, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void ProgressIndicator::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    setFixedSize(interfaceLength(edge), interfaceLength(edge));
    update();
}

void ProgressIndicator::showEvent(QShowEvent*) {
    m_turn.start();
}

void ProgressIndicator::hideEvent(QHideEvent*) {
    m_turn.stop();
}

void ProgressIndicator::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = width() / 2.0;
    painter.translate(QRectF(rect()).center());
    const int first = m_turn.currentValue().toInt() % spokes;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (first - spoke + spokes) % spokes;
        const double opacity = faintest + (1 - faintest) * (spokes - 1 - age) / (spokes - 1);
        painter.setPen(QPen(m_theme.primary(opacity), radius * spokeWidth, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(spoke * 360.0 / spokes);
        painter.drawLine(QPointF(0, -radius * spokeStart), QPointF(0, -radius * spokeEnd));
        painter.restore();
    }
}

} // namespace kestrova
