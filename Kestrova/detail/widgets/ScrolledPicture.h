#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QImage>
#include <QScrollArea>

#include <functional>
#include <optional>

class QLabel;

namespace kestrova {

class PicturePage;
class ProgressIndicator;
class ThinScrollBar;

/// A picture at its own size, or as wide as there is room, that scrolls down. While there is none yet an
/// indicator turns; one that cannot be read is told of in words. The arrow, page, Home and End keys scroll.
class ScrolledPicture final : public QScrollArea {
public:
    explicit ScrolledPicture(QWidget* parent);

    /// Absent while it is being made, null if it cannot be read. One device pixel is one of the screen's.
    void render(const std::optional<QImage>& picture);
    void setTheme(const ShelfTheme& theme);
    /// For the picture, in device pixels.
    int availableWidth() const;

    /// The room may have changed.
    std::function<void()> onResize;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    ThinScrollBar* m_scrollBar;
    PicturePage* m_page;
    ProgressIndicator* m_progress;
    QLabel* m_message;
};

} // namespace kestrova
