#include "Kestrova/shelf/widgets/CollectionSheetView.h"

#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Opacity.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/CollectionSheetCard.h"
#include "Kestrova/shelf/widgets/NameField.h"
#include "Kestrova/shelf/widgets/SwatchRow.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto entranceDuration = 180ms;
constexpr double entranceWay = 16;

bool isPlain(const QKeyEvent& event) {
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

CollectionSheetView::CollectionSheetView(ShelfPanelView& view, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_entrance(entranceDuration, easing(AnimationTiming::easeOut), [this] { step(); }) {
    hide();
}

template<typename Change>
void CollectionSheetView::change(Change&& change) {
    m_view.perform([&] {
        // What the toolkit tells while the card goes no longer concerns anybody.
        if (auto* const sheet = m_view.collectionSheet())
            std::forward<Change>(change)(*sheet);
    });
}

void CollectionSheetView::render(const ShelfTheme& theme) {
    m_theme = theme;
    const auto* const sheet = m_view.collectionSheet();
    if (!sheet) {
        close();
        return;
    }
    if (m_mode != sheet->mode)
        open(*sheet);
    m_card->render(*sheet, theme);
    arrange();
    update();
    // The shelf that comes back with its sheet, too.
    if (auto* const focused = window()->focusWidget(); !focused || !m_card->isAncestorOf(focused))
        m_card->nameField().setFocus(Qt::OtherFocusReason);
}

void CollectionSheetView::open(const CollectionEditSheet& sheet) {
    m_mode = sheet.mode;
    makeCard();
    m_card->render(sheet, m_theme);
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    arrange();
    m_card->show();
    show();
    raise();
    m_card->nameField().setFocus(Qt::OtherFocusReason);
    m_card->nameField().selectAll();
    if (parentWidget()->isVisible())
        m_entrance.glideTo(true);
    else
        m_entrance.jumpTo(true);
}

void CollectionSheetView::makeCard() {
    if (m_card) {
        m_card->hide();
        m_card->deleteLater();
    }
    m_card = new CollectionSheetCard(this);
    m_card->nameField().onTextChange = [this](const QString& name) {
        change([&](CollectionEditSheet& sheet) { sheet._name = name; });
    };
    m_card->nameField().onFocusChange = [this](bool isFocused) {
        change([&](CollectionEditSheet& sheet) { sheet._nameFocused = isFocused; });
    };
    m_card->swatches().onChoose = [this](const std::optional<QString>& hex) {
        change([&](CollectionEditSheet& sheet) { sheet._selectedColorHex = hex; });
    };
    m_card->swatches().onHover = [this](bool isHovered, const std::optional<QString>& hex) {
        change([&](CollectionEditSheet& sheet) {
            sheet._hoveringSwatch = isHovered;
            sheet._hoverHex = hex;
        });
    };
    m_card->onSubmit = [this] { submit(); };
    m_card->onCancel = [this] { change([](CollectionEditSheet& sheet) { sheet.cancel(); }); };
}

void CollectionSheetView::close() {
    if (!m_mode)
        return;
    m_mode.reset();
    // It only fades now; the shelf below is there again.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    if (isVisible() && m_entrance.value() > 0) {
        m_entrance.glideTo(false);
    } else {
        m_entrance.jumpTo(false);
        // It may have been there already, and then nothing tells of it.
        step();
    }
}

void CollectionSheetView::submit() {
    // So that no syllable comes after the name.
    QGuiApplication::inputMethod()->commit();
    change([](CollectionEditSheet& sheet) { sheet.submit(); });
}

void CollectionSheetView::step() {
    const double shown = m_entrance.value();
    if (!m_mode && shown == 0) {
        hide();
        if (auto* const card = std::exchange(m_card, nullptr))
            card->deleteLater();
        return;
    }
    if (m_card)
        setOpacity(*m_card, shown);
    arrange();
    update();
}

void CollectionSheetView::arrange() {
    if (!m_card)
        return;
    const auto size = QSize(CollectionSheetCard::fixedWidth, m_card->sizeHint().height());
    const int way = static_cast<int>(std::lround((1 - m_entrance.value()) * entranceWay));
    m_card->setGeometry((width() - size.width()) / 2, (height() - size.height()) / 2 - way, size.width(),
                        size.height());
}

void CollectionSheetView::resizeEvent(QResizeEvent*) {
    arrange();
}

void CollectionSheetView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_entrance.value());
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.dim);
    painter.drawRoundedRect(rect(), ShelfFrame::cornerRadius, ShelfFrame::cornerRadius);
}

void CollectionSheetView::keyPressEvent(QKeyEvent* event) {
    // All of them end here; the shelf below is not asked.
    event->accept();
    // The press that opened the sheet may still be held.
    if (event->isAutoRepeat() || !isPlain(*event) || !m_mode)
        return;
    if (event->key() == Qt::Key_Escape)
        change([](CollectionEditSheet& sheet) { sheet.cancel(); });
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        submit();
}

void CollectionSheetView::mousePressEvent(QMouseEvent* event) {
    // A click beside the card neither reaches the shelf nor throws away what was typed.
    event->accept();
}

void CollectionSheetView::wheelEvent(QWheelEvent* event) {
    event->accept();
}

void CollectionSheetView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
}

} // namespace kestrova
