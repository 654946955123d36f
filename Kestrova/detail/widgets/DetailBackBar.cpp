#include "Kestrova/detail/widgets/DetailBackBar.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/SymbolButton.h"

#include <QHBoxLayout>
#include <QLabel>

namespace kestrova {
namespace {

constexpr double textSize = 13;
constexpr double buttonEdge = 28;
constexpr int spacing = 4;

} // namespace

DetailBackBar::DetailBackBar(const QString& title, QWidget* trailing, QWidget* parent)
    : QWidget(parent),
      m_back(new SymbolButton(QStringLiteral("뒤로"), textSize, this)),
      m_title(new QLabel(title, this)) {
    m_back->onTap = [this] {
        if (onBack)
            onBack();
    };
    m_title->setTextFormat(Qt::PlainText);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    row->addWidget(m_back);
    row->addWidget(m_title);
    row->addStretch();
    if (trailing)
        row->addWidget(trailing);
}

void DetailBackBar::setTheme(const ShelfTheme& theme) {
    m_back->render(QStringLiteral("chevron.left"), true, theme);
    m_back->setFixedSize(interfaceLength(buttonEdge), interfaceLength(buttonEdge));
    m_title->setFont(interfaceFont(textSize, QFont::DemiBold));
    auto palette = theme.palette();
    palette.setColor(QPalette::WindowText, theme.secondaryText);
    m_title->setPalette(palette);
}

} // namespace kestrova
