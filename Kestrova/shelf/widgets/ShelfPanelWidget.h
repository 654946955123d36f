#pragma once

#include "Kestrova/shelf/ShelfPanel.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Platform/MainQueue.h"

#include <QRect>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

namespace kestrova {

class Appearance;
class ShelfContent;
class WindowManagement;

/// The shelf's window.
///
/// While it is hidden nothing is laid out or drawn: what has changed meanwhile is shown with the next
/// showing. The native window and everything that the first showing needs are made beforehand, in a quiet
/// turn.
class ShelfPanelWidget final : public QWidget, public ShelfPanel {
public:
    struct Surroundings {
        MainQueue& mainQueue;
        WindowManagement& windowManagement;
        Appearance& appearance;
        /// A rectangle of the screen in the toolkit's coordinates.
        std::function<QRect(const ScreenRect&)> toolkitRect;
        /// The other way round.
        std::function<ScreenRect(const QRect&)> screenRect;
        /// Told in quiet moments, some seconds after the start and after each hiding: what was used before
        /// may be let go, since what the next showing needs is drawn anew. May be empty.
        std::function<void()> onDisuse = {};
        /// Told when nothing will be drawn for a while. May be empty.
        std::function<void()> onRest = {};
        /// Where news for programs that read to people go.
        TellReaders tellReaders = QAccessible::updateAccessibility;
    };

    /// What it is given outlives it.
    explicit ShelfPanelWidget(Surroundings surroundings);
    ~ShelfPanelWidget() override;

    void setContent(ShelfPanelView& view) override;

    bool isVisible() const override { return QWidget::isVisible(); }
    std::uint64_t windowNumber() const override;
    ScreenRect frame() const override { return m_surroundings.screenRect(geometry()); }
    void setFrame(const ScreenRect& frame) override;
    void animateFrame(const ScreenRect& frame, Duration duration, AnimationTiming timing) override;
    void setAlpha(double alpha) override;
    void animateAlpha(double alpha, Duration duration, AnimationTiming timing) override;
    void orderFrontRegardless() override;
    void orderOut() override;
    void setIgnoresMouseEvents(bool ignores) override;
    void endEditing() override;
    void pickShareTarget(const std::vector<ShareTarget>& targets,
                         std::function<void(const ShareTarget&)> done) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void render();
    void prepare();
    /// Loads the fonts, symbols and code that the next showing needs.
    void drawUnseen();
    void awaitDisuse();
    void rest();
    /// Looks whether the window is blended with what lies behind it.
    void adaptToScreen();
    void shape();

    Surroundings m_surroundings;
    ShelfPanelView* m_view = nullptr;
    ShelfContent* m_content = nullptr;
    QVariantAnimation m_frameAnimation;
    QVariantAnimation m_alphaAnimation;
    QVariantAnimation m_widthAnimation;
    ScheduledBlock m_preparation;
    bool m_isBlended = true;
    bool m_isRendering = false;
    bool m_isRenderDue = false;
};

} // namespace kestrova
