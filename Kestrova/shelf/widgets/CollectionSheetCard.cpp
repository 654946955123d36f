#include "Kestrova/shelf/widgets/CollectionSheetCard.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "Kestrova/shelf/controls/TabStops.h"
#include "Kestrova/shelf/widgets/CollectionPreview.h"
#include "Kestrova/shelf/widgets/NameField.h"
#include "Kestrova/shelf/widgets/SwatchRow.h"

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace kestrova {
namespace {

constexpr int padding = 20;
constexpr int sectionSpacing = 16;
constexpr int labelSpacing = 6;
constexpr int titleSpacing = 12;
constexpr double radius = 12;

} // namespace

CollectionSheetCard::CollectionSheetCard(QWidget* parent)
    : QWidget(parent),
      m_title(new QLabel(this)),
      m_preview(new CollectionPreview(this)),
      m_nameLabel(new QLabel(QStringLiteral("이름"), this)),
      m_name(new NameField(this)),
      m_colorLabel(new QLabel(QStringLiteral("색"), this)),
      m_swatches(new SwatchRow(this)),
      m_cancel(new SheetButton(SheetButton::Role::cancel, this)),
      m_submit(new SheetButton(SheetButton::Role::defaultAction, this)) {
    m_name->setPlaceholderText(QStringLiteral("예: 자주 쓰는 코드"));
    m_name->setAccessibleName(QStringLiteral("이름"));
    m_nameLabel->setBuddy(m_name);
    m_cancel->setText(QStringLiteral("취소"));
    m_cancel->onTap = [this] {
        if (onCancel)
            onCancel();
    };
    m_submit->onTap = [this] {
        if (onSubmit)
            onSubmit();
    };

    auto* const head = new QHBoxLayout;
    head->setSpacing(titleSpacing);
    head->addWidget(m_title);
    head->addStretch();
    head->addWidget(m_preview);
    auto* const foot = new QHBoxLayout;
    foot->addWidget(m_cancel);
    foot->addStretch();
    foot->addWidget(m_submit);
    foot->setContentsMargins(ColorSwatch::overhang - SheetButton::overhang, 0,
                             ColorSwatch::overhang - SheetButton::overhang, 0);
    // What stands out around swatches and buttons lies beyond the edges of the column.
    const QMargins inColumn(ColorSwatch::overhang, 0, ColorSwatch::overhang, 0);
    head->setContentsMargins(inColumn);
    const auto alignedLine = [&](QWidget* widget) {
        auto* const line = new QHBoxLayout;
        line->setContentsMargins(inColumn);
        line->addWidget(widget);
        return line;
    };
    constexpr int sidePadding = padding - ColorSwatch::overhang;
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(sidePadding, padding, sidePadding, padding - SheetButton::overhang);
    column->setSpacing(0);
    column->addLayout(head);
    column->addSpacing(sectionSpacing);
    column->addLayout(alignedLine(m_nameLabel));
    column->addSpacing(labelSpacing);
    column->addLayout(alignedLine(m_name));
    column->addSpacing(sectionSpacing);
    column->addLayout(alignedLine(m_colorLabel));
    // The label keeps a distance from the ring around a swatch too.
    column->addSpacing(labelSpacing / 2);
    column->addWidget(m_swatches);
    column->addSpacing(sectionSpacing);
    column->addLayout(foot);
    setFixedWidth(fixedWidth);
    setAccessibleRole(*this, QAccessible::Dialog);
}

void CollectionSheetCard::render(const CollectionEditSheet& sheet, const ShelfTheme& theme) {
    if (m_theme != theme) {
        m_theme = theme;
        m_title->setFont(interfaceFont(15, QFont::DemiBold));
        for (auto* const label : {m_nameLabel, m_colorLabel})
            label->setFont(interfaceFont(12));
        auto palette = theme.palette();
        m_title->setPalette(palette);
        palette.setColor(QPalette::WindowText, theme.secondaryText);
        for (auto* const label : {m_nameLabel, m_colorLabel})
            label->setPalette(palette);
        m_name->setTheme(theme);
        m_cancel->setTheme(theme);
        m_submit->setTheme(theme);
        update();
    }
    setSpokenName(*this, sheet.title());
    m_title->setText(sheet.title());
    m_preview->render(sheet, theme);
    m_name->show(sheet._name);
    m_swatches->render(sheet._selectedColorHex, theme);
    m_submit->setText(sheet.submitTitle());
}

std::vector<QWidget*> CollectionSheetCard::stops() const {
    return {m_name, &m_swatches->stop(), m_cancel, m_submit};
}

bool CollectionSheetCard::focusNextPrevChild(bool next) {
    // Around within the card: what lies below the sheet is out of reach.
    const auto all = stops();
    const auto at = std::ranges::find(all, QApplication::focusWidget());
    all[placeBehind(at - all.begin(), std::ssize(all), next)]->setFocus(next ? Qt::TabFocusReason
                                                                             : Qt::BacktabFocusReason);
    return true;
}

void CollectionSheetCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_theme.card);
    painter.setPen(QPen(m_theme.border, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace kestrova
