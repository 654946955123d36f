#pragma once

#include <QAbstractButton>
#include <QString>

namespace kestrova {

/// A white symbol on a dark disc that lies on a preview.
class ThumbnailButton final : public QAbstractButton {
public:
    /// In points.
    static constexpr int diameter = 22;

    /// `symbolSize` is that of a text beside the symbol; `help` is what the button does, in a word.
    ThumbnailButton(const QString& symbol, double symbolSize, const QString& help, QWidget* parent);

    bool isHovered() const { return m_isHovered; }
    /// From 0 to 1.
    void setOpacity(double opacity);
    /// Otherwise a click goes to the preview.
    void setTakesClicks(bool takes);
    /// For where the mouse is without having moved.
    void setHovered(bool isHovered);

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    double m_symbolSize;
    double m_opacity = 0;
    bool m_isHovered = false;
};

} // namespace kestrova
