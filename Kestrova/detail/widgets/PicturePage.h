#pragma once

#include <QImage>
#include <QWidget>

namespace kestrova {

/// A picture, one of its pixels a device pixel, in the middle of the room that there is; smaller if it is too
/// wide for that.
class PicturePage final : public QWidget {
public:
    explicit PicturePage(QWidget* parent);

    /// Null: nothing.
    void show(const QImage& picture);
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// In points.
    QSizeF sizeWithin(double width) const;

    QImage m_picture;
};

} // namespace kestrova
