#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"

#include "Kestrova/look/Easing.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/widgets/ItemViewAccessible.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Platform/Appearance.h"
#include "Platform/WindowManagement.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QPixmap>
#include <QScreen>
#include <QWindow>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto widthDuration = 280ms;
// The program is ready for others first.
constexpr auto preparationDelay = 100ms;
// Until then a person may well come back.
constexpr auto untilDisuse = 10s;

/// A menu of the program keeps the keyboard to itself, and so it must not stay beside the shelf.
void closePopups() {
    while (auto* const popup = QApplication::activePopupWidget())
        if (!popup->close())
            return;
}

void run(QVariantAnimation& animation, const QVariant& from, const QVariant& to,
         std::chrono::milliseconds duration, QEasingCurve::Type curve) {
    animation.stop();
    animation.setStartValue(from);
    animation.setEndValue(to);
    animation.setDuration(static_cast<int>(duration.count()));
    animation.setEasingCurve(curve);
    animation.start();
}

/// Corners by whole pixels, for screens on which nothing is blended.
QRegion roundedRegion(const QRect& rect) {
    constexpr double radius = ShelfFrame::cornerRadius;
    QRegion region(rect);
    for (int line = 0; line < static_cast<int>(radius); ++line) {
        const double rise = radius - line - 0.5;
        const int cut = static_cast<int>(std::lround(radius - std::sqrt(radius * radius - rise * rise)));
        for (const int y : {rect.top() + line, rect.bottom() - line}) {
            region -= QRect(rect.left(), y, cut, 1);
            region -= QRect(rect.right() - cut + 1, y, cut, 1);
        }
    }
    return region;
}

} // namespace

ShelfPanelWidget::ShelfPanelWidget(Surroundings surroundings)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_surroundings(std::move(surroundings)) {
    // First: what is asked for before that stays what it is.
    installPanelAccessibility();
    installItemViewAccessibility();
    setAccessibleRole(*this, QAccessible::Dialog);
    setWindowTitle(QStringLiteral("Kestrova"));
    // Also where nothing is blended now: a compositor may start later, and the window's depth never changes.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    connect(&m_frameAnimation, &QVariantAnimation::valueChanged,
            [this](const QVariant& frame) { setGeometry(frame.toRect()); });
    connect(&m_alphaAnimation, &QVariantAnimation::valueChanged,
            [this](const QVariant& alpha) { setWindowOpacity(alpha.toDouble()); });
    connect(&m_widthAnimation, &QVariantAnimation::valueChanged, [this](const QVariant& width) {
        m_content->resize(width.toInt(), ShelfFrame::height);
        shape();
    });
    resize(ShelfFrame::width, ShelfFrame::height);
}

ShelfPanelWidget::~ShelfPanelWidget() {
    m_surroundings.appearance.onChange = nullptr;
    // First, and without the events of a window that hides: the state that it paints may have gone by now.
    delete m_content;
}

void ShelfPanelWidget::setContent(ShelfPanelView& view) {
    m_view = &view;
    view.onRender = [this] { render(); };
    m_surroundings.appearance.onChange = [this] { render(); };
    m_preparation = m_surroundings.mainQueue.afterUnlessCancelled(preparationDelay, [this] {
        prepare();
        // In a turn of its own, so that nobody has to wait for both.
        m_preparation = m_surroundings.mainQueue.afterUnlessCancelled(Duration::zero(), [this] {
            drawUnseen();
            awaitDisuse();
        });
    });
}

void ShelfPanelWidget::drawUnseen() {
    QPixmap unseen(size());
    QWidget::render(&unseen);
    rest();
}

void ShelfPanelWidget::awaitDisuse() {
    m_preparation = m_surroundings.mainQueue.afterUnlessCancelled(untilDisuse, [this] {
        if (m_surroundings.onDisuse)
            m_surroundings.onDisuse();
        drawUnseen();
    });
}

void ShelfPanelWidget::rest() {
    if (m_surroundings.onRest)
        m_surroundings.onRest();
}

void ShelfPanelWidget::prepare() {
    m_preparation.cancel();
    if (m_content)
        return;
    m_content = new ShelfContent(*m_view, m_surroundings.mainQueue, m_surroundings.appearance,
                                 m_surroundings.tellReaders, this);
    m_content->resize(static_cast<int>(m_view->panelWidth()), ShelfFrame::height);
    create();
    ensurePolished();
    m_content->render();
}

void ShelfPanelWidget::render() {
    m_isRenderDue = true;
    if (!isVisible() && m_content)
        m_content->forgetDeleted();
    if (!isVisible() || m_isRendering)
        return;
    m_isRendering = true;
    // To show one state can lead to another, as when another row comes to lie under the pointer.
    while (std::exchange(m_isRenderDue, false)) {
        const int width = static_cast<int>(m_view->panelWidth());
        const int shownWidth = m_widthAnimation.state() == QAbstractAnimation::Running
                                   ? m_widthAnimation.endValue().toInt()
                                   : m_content->width();
        if (width != shownWidth)
            run(m_widthAnimation, m_content->width(), width, widthDuration,
                easing(AnimationTiming::easeInEaseOut));
        m_content->render();
    }
    m_isRendering = false;
}

std::uint64_t ShelfPanelWidget::windowNumber() const {
    // Making the native window changes nothing that can be seen.
    return static_cast<std::uint64_t>(const_cast<ShelfPanelWidget*>(this)->winId());
}

void ShelfPanelWidget::setFrame(const ScreenRect& frame) {
    m_frameAnimation.stop();
    const auto rect = m_surroundings.toolkitRect(frame);
    // First: the scale of the display that the window stood on must not be applied to its new place.
    if (auto* const display = QGuiApplication::screenAt(rect.center()))
        setScreen(display);
    setGeometry(rect);
}

void ShelfPanelWidget::animateFrame(const ScreenRect& frame, Duration duration, AnimationTiming timing) {
    run(m_frameAnimation, geometry(), m_surroundings.toolkitRect(frame), duration, easing(timing));
}

void ShelfPanelWidget::setAlpha(double alpha) {
    m_alphaAnimation.stop();
    setWindowOpacity(alpha);
}

void ShelfPanelWidget::animateAlpha(double alpha, Duration duration, AnimationTiming timing) {
    if (alpha == 0)
        // What the menu offers is no longer on offer.
        closePopups();
    run(m_alphaAnimation, windowOpacity(), alpha, duration, easing(timing));
}

void ShelfPanelWidget::orderFrontRegardless() {
    closePopups();
    if (!isVisible()) {
        prepare();
        if (std::exchange(m_isRenderDue, false)) {
            m_widthAnimation.stop();
            m_content->resize(static_cast<int>(m_view->panelWidth()), ShelfFrame::height);
            m_content->render();
        }
        adaptToScreen();
        show();
        m_surroundings.windowManagement.standApart(windowNumber());
    }
    raise();
}

void ShelfPanelWidget::orderOut() {
    m_alphaAnimation.stop();
    if (m_frameAnimation.state() == QAbstractAnimation::Running)
        m_frameAnimation.setCurrentTime(m_frameAnimation.duration());
    closePopups();
    m_surroundings.windowManagement.handOverKeyboard(windowNumber());
    hide();
    if (m_content) {
        m_content->awaitLateKeys();
        awaitDisuse();
    }
    if (m_view)
        m_view->dropLists();
    rest();
}

void ShelfPanelWidget::setIgnoresMouseEvents(bool ignores) {
    create();
    windowHandle()->setFlag(Qt::WindowTransparentForInput, ignores);
}

void ShelfPanelWidget::endEditing() {
    if (m_content)
        m_content->endEditing();
}

void ShelfPanelWidget::pickShareTarget(const std::vector<ShareTarget>& targets,
                                       std::function<void(const ShareTarget&)> done) {
    if (m_content)
        m_content->pickShareTarget(targets, std::move(done));
}

void ShelfPanelWidget::adaptToScreen() {
    m_isBlended = m_surroundings.windowManagement.isCompositing();
    m_content->setGround(m_isBlended ? Ground::translucent : Ground::opaque);
    shape();
}

void ShelfPanelWidget::shape() {
    if (!m_isBlended)
        setMask(roundedRegion(m_content->geometry().intersected(rect())));
    else if (!mask().isEmpty())
        clearMask();
}

void ShelfPanelWidget::closeEvent(QCloseEvent* event) {
    // The window manager asks for it. How the panel goes is not the window's to decide.
    event->ignore();
    if (m_view)
        m_view->perform([this] { m_view->onDismiss(); });
}

void ShelfPanelWidget::keyPressEvent(QKeyEvent* event) {
    // The toolkit takes the menu key alone for this, which many keyboards do not have.
    const bool asksForMenu = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (!asksForMenu || !windowHandle()) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    // On its way from the window it finds whatever has the keyboard.
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, QCursor::pos());
    QCoreApplication::sendEvent(windowHandle(), &menu);
}

void ShelfPanelWidget::resizeEvent(QResizeEvent*) {
    if (m_content && isVisible())
        shape();
}

void ShelfPanelWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The desktop has other colours or another font.
    const bool isOfTheDesktop = event->type() == QEvent::PaletteChange ||
                                event->type() == QEvent::ApplicationFontChange ||
                                event->type() == QEvent::FontChange;
    if (isOfTheDesktop && m_content)
        render();
}

} // namespace kestrova
