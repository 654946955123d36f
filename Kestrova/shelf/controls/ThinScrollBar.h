#pragma once

#include <QColor>
#include <QScrollBar>

namespace kestrova {

/// A scroll bar that is no more than a rounded thumb on the ground that it lies on.
class ThinScrollBar final : public QScrollBar {
public:
    explicit ThinScrollBar(QWidget* parent = nullptr) : QScrollBar(Qt::Vertical, parent) {}

    void setThumbColor(const QColor& color);
    QSize sizeHint() const override { return {thickness, 3 * thickness}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int thickness = 10;

    QColor m_thumb;
};

} // namespace kestrova
