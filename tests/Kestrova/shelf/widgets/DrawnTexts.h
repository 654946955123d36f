#pragma once

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <QString>
#include <QTextItem>
#include <QWidget>

#include <vector>

namespace kestrova {

/// A piece of text that a widget draws.
struct DrawnText {
    QString text;
    /// In the coordinates of the widget; what of it is in sight.
    QRectF frame;
};

/// What a widget and those within it write when they are painted.
class DrawnTexts {
public:
    static std::vector<DrawnText> of(QWidget& widget) {
        Paper paper(widget.size());
        widget.render(&paper, {}, {}, QWidget::DrawChildren | QWidget::DrawWindowBackground);
        return paper.texts();
    }

private:
    class Recorder final : public QPaintEngine {
    public:
        // With every feature, so that nothing reaches it as a picture that could be a text.
        Recorder() : QPaintEngine(AllFeatures) {}

        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        Type type() const override { return User; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF& baseline, const QTextItem& item) override {
            if (painter()->opacity() <= 0 || item.text().trimmed().isEmpty())
                return;
            const QRectF line(baseline.x(), baseline.y() - item.ascent(), item.width(),
                              item.ascent() + item.descent());
            const auto whole = painter()->deviceTransform().mapRect(line);
            const auto clip = systemClip();
            const auto seen = clip.isEmpty() ? whole : whole & QRectF(clip.boundingRect());
            // Of a line that is cut there may be no stroke left to look at.
            if (seen.height() >= whole.height() - 1)
                texts.push_back({item.text(), seen});
        }

        std::vector<DrawnText> texts;
    };

    class Paper final : public QImage {
    public:
        explicit Paper(QSize size) : QImage(size, Format_ARGB32_Premultiplied) {}
        QPaintEngine* paintEngine() const override { return &m_recorder; }
        const std::vector<DrawnText>& texts() const { return m_recorder.texts; }

    private:
        mutable Recorder m_recorder;
    };
};

} // namespace kestrova
