#include "Kestrova/shelf/widgets/PreviewPane.h"

#include "Kestrova/detail/widgets/DetailView.h"
#include "Kestrova/detail/widgets/EmptyDetailState.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Opacity.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/HintBar.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QPainter>
#include <QPixmap>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto changeDuration = 150ms;
constexpr int hintSideMargin = 8;
constexpr int hintBottomMargin = 8;

} // namespace

class PreviewPane::Former final : public QWidget {
public:
    explicit Former(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

    void start(QPixmap picture) {
        m_picture = std::move(picture);
        raise();
        show();
    }
    void setShown(double shown) {
        m_shown = shown;
        if (shown <= 0) {
            hide();
            m_picture = {};
        }
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(m_shown);
        painter.drawPixmap(0, 0, m_picture);
    }

private:
    QPixmap m_picture;
    double m_shown = 0;
};

PreviewPane::PreviewPane(ShelfPanelView& view, const DetailSurroundings& surroundings, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_detail(new DetailView(surroundings, this)),
      m_emptyState(new EmptyDetailState(this)),
      m_content(m_emptyState),
      m_hints(new HintBar(this)),
      m_former(new Former(this)),
      m_entrance(changeDuration, easing(AnimationTiming::easeOut), [this] { arrange(); }),
      m_change(changeDuration, easing(AnimationTiming::easeOut), [this] {
          setOpacity(*m_content, m_change.value());
          m_former->setShown(1 - m_change.value());
      }) {
    m_entrance.jumpTo(true);
    m_change.jumpTo(true);
    m_detail->hide();
    m_hints->hide();
}

void PreviewPane::render(const ShelfTheme& theme) {
    const auto item = m_view.currentItem();
    const auto id = item ? std::optional(item->id()) : std::nullopt;
    if (const auto former = std::exchange(m_shown, id); former != id)
        showChange(former, id);
    m_detail->render(item, theme);
    m_emptyState->render(theme);
    m_content = item ? static_cast<QWidget*>(m_detail) : m_emptyState;
    m_detail->setVisible(item != nullptr);
    m_emptyState->setVisible(!item);
    if (item)
        m_hints->render(keyHints(*item, m_view._viewMode), theme);
    m_hints->setVisible(item != nullptr);
    arrange();
}

void PreviewPane::forgetDeleted() {
    m_detail->forgetDeleted();
}

void PreviewPane::showChange(std::optional<ItemID> from, std::optional<ItemID> to) {
    m_change.jumpTo(true);
    m_entrance.jumpTo(true);
    if (!isVisible())
        return;
    // Whoever runs past many items wants to see them, not how they change.
    const bool isRun = m_sinceChange.isValid() && !m_sinceChange.hasExpired(changeDuration.count());
    m_sinceChange.start();
    if (isRun)
        return;
    if (to && !from) {
        m_entrance.jumpTo(false);
        m_entrance.glideTo(true);
        return;
    }
    m_former->start(m_content->grab());
    m_change.jumpTo(false);
    m_change.glideTo(true);
}

void PreviewPane::arrange() {
    const int way = static_cast<int>(std::lround((1 - m_entrance.value()) * height()));
    int contentHeight = height();
    if (!m_hints->isHidden()) {
        const int hintWidth = QWidget::width() - 2 * hintSideMargin;
        const int hintHeight = m_hints->heightForWidth(hintWidth);
        contentHeight -= hintHeight + hintBottomMargin;
        m_hints->setGeometry(hintSideMargin, contentHeight + way, hintWidth, hintHeight);
    }
    m_content->setGeometry(0, way, QWidget::width(), contentHeight);
    m_former->setGeometry(m_content->geometry());
}

void PreviewPane::resizeEvent(QResizeEvent*) {
    arrange();
}

void PreviewPane::hideEvent(QHideEvent*) {
    m_change.finish();
    m_entrance.finish();
}

} // namespace kestrova
