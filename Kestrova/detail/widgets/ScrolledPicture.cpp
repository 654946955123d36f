#include "Kestrova/detail/widgets/ScrolledPicture.h"

#include "Kestrova/detail/widgets/PicturePage.h"
#include "Kestrova/detail/widgets/ProgressIndicator.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>

#include <cmath>

namespace kestrova {

ScrolledPicture::ScrolledPicture(QWidget* parent)
    : QScrollArea(parent),
      m_scrollBar(new ThinScrollBar),
      m_page(new PicturePage(nullptr)),
      m_progress(new ProgressIndicator(this)),
      m_message(new QLabel(QStringLiteral("이미지를 읽을 수 없어요"), this)) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(m_scrollBar);
    setWidget(m_page);
    viewport()->setAutoFillBackground(false);
    m_page->setAutoFillBackground(false);
    auto* const centre = new QGridLayout(this);
    centre->addWidget(m_progress, 0, 0, Qt::AlignCenter);
    centre->addWidget(m_message, 0, 0, Qt::AlignCenter);
    m_message->hide();
}

void ScrolledPicture::render(const std::optional<QImage>& picture) {
    m_progress->setVisible(!picture);
    m_message->setVisible(picture && picture->isNull());
    m_page->show(picture.value_or(QImage()));
}

void ScrolledPicture::setTheme(const ShelfTheme& theme) {
    m_scrollBar->setThumbColor(theme.scrollThumb);
    m_progress->setTheme(theme);
    m_message->setFont(interfaceFont(12));
    auto palette = theme.palette();
    palette.setColor(QPalette::WindowText, theme.secondaryText);
    m_message->setPalette(palette);
}

int ScrolledPicture::availableWidth() const {
    // The bar may come with the picture.
    const int room = width() - m_scrollBar->sizeHint().width();
    return static_cast<int>(std::floor(room * devicePixelRatioF()));
}

void ScrolledPicture::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    if (onResize)
        onResize();
}

void ScrolledPicture::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Home:
        m_scrollBar->setValue(m_scrollBar->minimum());
        break;
    case Qt::Key_End:
        m_scrollBar->setValue(m_scrollBar->maximum());
        break;
    default:
        QScrollArea::keyPressEvent(event);
    }
}

} // namespace kestrova
